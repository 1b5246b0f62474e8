#pragma once

#include <KestrioKit/KestrioKitExport.h>

#include <QColor>
#include <QMetaType>

/// The colours of a survey's screens, each named after what it is for. A value; in QML a gadget.
/// All are opaque unless noted otherwise.
struct KESTRIOKIT_EXPORT SurveyPalette {
    Q_GADGET
    Q_PROPERTY(QColor card MEMBER card CONSTANT)
    Q_PROPERTY(QColor cardBorder MEMBER cardBorder CONSTANT)
    Q_PROPERTY(QColor text MEMBER text CONSTANT)
    Q_PROPERTY(QColor secondaryText MEMBER secondaryText CONSTANT)
    Q_PROPERTY(QColor symbol MEMBER symbol CONSTANT)
    Q_PROPERTY(QColor controlBorder MEMBER controlBorder CONSTANT)
    Q_PROPERTY(QColor focusRing MEMBER focusRing CONSTANT)
    Q_PROPERTY(QColor accent MEMBER accent CONSTANT)
    Q_PROPERTY(QColor textOnAccent MEMBER textOnAccent CONSTANT)
    Q_PROPERTY(QColor pressedShade MEMBER pressedShade CONSTANT)
    Q_PROPERTY(QColor pressedAnswer MEMBER pressedAnswer CONSTANT)
    Q_PROPERTY(QColor dot MEMBER dot CONSTANT)
    Q_PROPERTY(QColor dimming MEMBER dimming CONSTANT)
    Q_PROPERTY(bool keepsContrast MEMBER keepsContrast CONSTANT)

public:
    /// The card, and the background of the text field, the check boxes and the close button.
    QColor card;
    /// The edge of the card; transparent where it has none.
    QColor cardBorder;
    /// Questions, answers and what the visitor writes.
    QColor text;
    /// The placeholder of the text field, and menu entries that cannot be chosen.
    QColor secondaryText;
    /// The close button's cross and edge, the scroll bars, and the edge of the menu.
    QColor symbol;
    /// The borders of answers, check boxes and the text field, and the lines between answers.
    QColor controlBorder;
    /// The ring on an answer that has the focus. On `accent` the ring is `textOnAccent`.
    QColor focusRing;
    /// The fill of action buttons and checked boxes, the dot of the current page, the caret, the
    /// selection in the text field, and the last page's check mark.
    QColor accent;
    /// What is written and drawn on `accent`.
    QColor textOnAccent;
    /// Laid over an action button while it is pressed; translucent.
    QColor pressedShade;
    /// The background of an answer while it is pressed; may be translucent.
    QColor pressedAnswer;
    /// The dots of the pages that are not current.
    QColor dot;
    /// Laid over the host's window; translucent.
    QColor dimming;
    /// Whether the colours have the contrasts that `SurveyAppearance` promises: in all appearances
    /// but the light one. Thin lines are drawn wider then, and a pressed check box or close button
    /// lies on `pressedAnswer` instead of being translucent.
    bool keepsContrast = true;
};

Q_DECLARE_METATYPE(SurveyPalette)
