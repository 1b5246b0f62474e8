#pragma once

#include <KestrioKit/KestrioKitExport.h>

#include <QColor>
#include <QMetaType>

/// The colours of a survey's screens, named after their purpose. A value type, and a gadget in QML.
/// All colours are opaque unless their comment says otherwise.
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
    /// The border of the card; transparent if the card has no border.
    QColor cardBorder;
    /// The text of questions and answers, and the text that the visitor types.
    QColor text;
    /// The placeholder of the text field, and disabled menu entries.
    QColor secondaryText;
    /// The cross and border of the close button, the scroll bars, and the border of the menu.
    QColor symbol;
    /// The borders of answers, check boxes and the text field, and the lines between answers.
    QColor controlBorder;
    /// The ring around an answer that has the focus. On `accent` the ring is `textOnAccent`.
    QColor focusRing;
    /// The fill of action buttons and checked boxes, the dot of the current page, the caret, the
    /// selection in the text field, and the last page's check mark.
    QColor accent;
    /// Text and symbols on `accent`.
    QColor textOnAccent;
    /// The overlay on an action button while it is pressed; translucent.
    QColor pressedShade;
    /// The background of an answer while it is pressed; may be translucent.
    QColor pressedAnswer;
    /// The dots of all pages but the current one.
    QColor dot;
    /// The overlay on the host's window; translucent.
    QColor dimming;
    /// Whether the colours have the contrasts that `SurveyAppearance` promises. This is so in all
    /// appearances but the light one. If true, thin lines are drawn wider, and a pressed check box
    /// or close button is drawn on `pressedAnswer` instead of becoming translucent. True by
    /// default.
    bool keepsContrast = true;
};

Q_DECLARE_METATYPE(SurveyPalette)
