#pragma once

#include "KestrioKit/Core/Session/ScreenIdentifiers.h"
#include "KestrioKit/Core/Session/ScreenMetrics.h"
#include "KestrioKit/Quick/Controls/PressGuard.h"
#include "KestrioKit/SurveyPalette.h"
#include "KestrioKit/SurveySession.h"
#include "KestrioKit/SurveyTexts.h"

#include <QFont>
#include <QQuickItem>
#include <QQuickTextDocument>
#include <QtQml/qqmlregistration.h>
#include <QUrl>

namespace KestrioKit::Quick {

/// Holds the look and the texts of one survey: sizes, colours, fonts, fixed texts and identifiers.
/// Lengths are in device-independent pixels. Use it on the main thread only.
class ScreenStyle final : public QObject {
    Q_OBJECT
    QML_NAMED_ELEMENT(KestrioStyle)
    QML_UNCREATABLE("Only the library's own screens use this type.")
    Q_PROPERTY(KestrioKit::ScreenMetrics metrics READ metrics CONSTANT)
    Q_PROPERTY(KestrioKit::ScreenIdentifiers identifiers READ identifiers CONSTANT)
    Q_PROPERTY(SurveyTexts texts READ texts CONSTANT)
    Q_PROPERTY(bool mirrored READ isMirrored CONSTANT)
    Q_PROPERTY(SurveyPalette palette READ palette NOTIFY changed)
    Q_PROPERTY(QFont titleFont READ titleFont NOTIFY changed)
    Q_PROPERTY(QFont bodyFont READ bodyFont NOTIFY changed)
    Q_PROPERTY(KestrioKit::Quick::PressGuard *pressGuard READ pressGuard CONSTANT)
    Q_PROPERTY(QQuickItem *layer READ layer CONSTANT)
    Q_PROPERTY(bool animated READ isAnimated NOTIFY changed)

public:
    /// Follows the session's appearance. The session may be destroyed before the style. `clock`
    /// must outlive it.
    ScreenStyle(const SurveySession &session, const Clock &clock, QQuickItem *layer);

    const ScreenMetrics &metrics() const { return screenMetrics; }
    const ScreenIdentifiers &identifiers() const { return screenIdentifiers; }
    const SurveyTexts &texts() const { return m_texts; }
    /// Returns whether the survey's language is written from right to left.
    bool isMirrored() const { return m_isMirrored; }
    const SurveyPalette &palette() const { return m_palette; }
    QFont titleFont() const;
    QFont bodyFont() const;
    /// Returns the item that the whole survey is on, for what lies above the card.
    QQuickItem *layer() const { return m_layer; }
    /// Returns the guard that the buttons of a survey share.
    PressGuard *pressGuard() { return &m_pressGuard; }
    /// Returns whether the visitor wants to see movements.
    bool isAnimated() const;

    /// Returns the file with the controls for a type of question; empty if there are none.
    Q_INVOKABLE QUrl contentView(int type) const;

    /// Returns the smallest width at which a text in that font takes only its own lines.
    Q_INVOKABLE int naturalWidth(const QString &text, const QFont &font) const;
    /// Returns how far glyphs, such as diacritical marks, extend above and below the line height.
    Q_INVOKABLE int overhangAbove(const QString &text, const QFont &font) const;
    Q_INVOKABLE int overhangBelow(const QString &text, const QFont &font) const;
    /// Returns the largest pixel size, at most that of `bodyFont`, at which each of the numbers
    /// fits into the room without wrapping.
    Q_INVOKABLE int scaleFontSize(int firstValue, int lastValue, int width, int height) const;
    /// Returns the width of the first one of two labels that share a row of that width.
    Q_INVOKABLE int firstLabelWidth(const QString &first, const QString &last, int width) const;
    /// Returns the width at which no option of a list of check boxes wraps.
    Q_INVOKABLE int widestCheckBox(const QList<SurveyOption> &options) const;
    /// Returns what assistive technology adds to the name of an answer that excludes the others.
    Q_INVOKABLE QString radioDescription(int position, int count, const QString &firstLabel,
                                         const QString &lastLabel) const;
    /// Returns the title of a menu's entry without the mark of its mnemonic.
    Q_INVOKABLE QString withoutMnemonic(QString title) const { return title.remove(u'&'); }
    /// Commits text that is still being composed to the focused field.
    Q_INVOKABLE void commitComposition() const;
    /// Returns the text of a field with its no-break spaces.
    Q_INVOKABLE QString typedText(const QQuickTextDocument *document) const;

Q_SIGNALS:
    /// Emitted when the palette or the application's font may have changed.
    void changed();

private:
    QQuickItem *m_layer;
    PressGuard m_pressGuard;
    SurveyTexts m_texts;
    SurveyPalette m_palette;
    bool m_isMirrored;
};

} // namespace KestrioKit::Quick
