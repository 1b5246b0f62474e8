#pragma once

#include "KestrioKit/Core/Session/KestrioUI.h"
#include "KestrioKit/KestrioKitExport.h"

#include <QList>
#include <QObject>
#include <QPointF>

#include <array>
#include <chrono>

namespace KestrioKit {

/// The sizes and durations of the survey screens that all front ends share. Lengths are in
/// device-independent pixels, and opacities from 0 (invisible) to 1 (opaque). A gadget in QML,
/// where durations are in milliseconds.
struct KESTRIOKIT_EXPORT ScreenMetrics {
    Q_GADGET
    Q_PROPERTY(int tinyPadding MEMBER tinyPadding CONSTANT)
    Q_PROPERTY(int regularPadding MEMBER regularPadding CONSTANT)
    Q_PROPERTY(int mediumPadding MEMBER mediumPadding CONSTANT)
    Q_PROPERTY(int smallRadius MEMBER smallRadius CONSTANT)
    Q_PROPERTY(int regularRadius MEMBER regularRadius CONSTANT)
    Q_PROPERTY(int borderWidth MEMBER borderWidth CONSTANT)
    Q_PROPERTY(int focusRingInset MEMBER focusRingInset CONSTANT)
    Q_PROPERTY(int focusRingWidth MEMBER focusRingWidth CONSTANT)
    Q_PROPERTY(int cardMaxWidth MEMBER cardMaxWidth CONSTANT)
    Q_PROPERTY(int cardRadius MEMBER cardRadius CONSTANT)
    Q_PROPERTY(int cardBottomPadding MEMBER cardBottomPadding CONSTANT)
    Q_PROPERTY(int leastRegularLength MEMBER leastRegularLength CONSTANT)
    Q_PROPERTY(int closeButtonSize MEMBER closeButtonSize CONSTANT)
    Q_PROPERTY(int closeButtonLineWidth MEMBER closeButtonLineWidth CONSTANT)
    Q_PROPERTY(int crossInset MEMBER crossInset CONSTANT)
    Q_PROPERTY(qreal pressedCloseButtonOpacity MEMBER pressedCloseButtonOpacity CONSTANT)
    Q_PROPERTY(int pageControlHeight MEMBER pageControlHeight CONSTANT)
    Q_PROPERTY(int dotSize MEMBER dotSize CONSTANT)
    Q_PROPERTY(int edgeDotSize MEMBER edgeDotSize CONSTANT)
    Q_PROPERTY(int dotPitch MEMBER dotPitch CONSTANT)
    Q_PROPERTY(int scrollBarBreadth MEMBER scrollBarBreadth CONSTANT)
    Q_PROPERTY(int scrollThumbBreadth MEMBER scrollThumbBreadth CONSTANT)
    Q_PROPERTY(int leastScrollThumbLength MEMBER leastScrollThumbLength CONSTANT)
    Q_PROPERTY(int scrollLine MEMBER scrollLine CONSTANT)
    Q_PROPERTY(int revealMargin MEMBER revealMargin CONSTANT)
    Q_PROPERTY(int scaleHeight MEMBER scaleHeight CONSTANT)
    Q_PROPERTY(int scaleTitleInset MEMBER scaleTitleInset CONSTANT)
    Q_PROPERTY(int optionHorizontalInset MEMBER optionHorizontalInset CONSTANT)
    Q_PROPERTY(int optionVerticalInset MEMBER optionVerticalInset CONSTANT)
    Q_PROPERTY(int checkBoxSize MEMBER checkBoxSize CONSTANT)
    Q_PROPERTY(int checkBoxDrawingSize MEMBER checkBoxDrawingSize CONSTANT)
    Q_PROPERTY(int checkBoxDrawingInset MEMBER checkBoxDrawingInset CONSTANT)
    Q_PROPERTY(QList<QPointF> checkMark READ checkMarkPoints CONSTANT)
    Q_PROPERTY(int checkBoxLineWidth MEMBER checkBoxLineWidth CONSTANT)
    Q_PROPERTY(int contrastCheckBoxLineWidth MEMBER contrastCheckBoxLineWidth CONSTANT)
    Q_PROPERTY(qreal pressedCheckBoxOpacity MEMBER pressedCheckBoxOpacity CONSTANT)
    Q_PROPERTY(int textFieldHeight MEMBER textFieldHeight CONSTANT)
    Q_PROPERTY(int textFieldInset MEMBER textFieldInset CONSTANT)
    Q_PROPERTY(int focusedTextFieldBorderWidth MEMBER focusedTextFieldBorderWidth CONSTANT)
    Q_PROPERTY(int caretWidth MEMBER caretWidth CONSTANT)
    Q_PROPERTY(int menuHorizontalInset MEMBER menuHorizontalInset CONSTANT)
    Q_PROPERTY(int menuVerticalInset MEMBER menuVerticalInset CONSTANT)
    Q_PROPERTY(int thanksCircleSize MEMBER thanksCircleSize CONSTANT)
    Q_PROPERTY(int thanksLineWidth MEMBER thanksLineWidth CONSTANT)
    Q_PROPERTY(QList<QPointF> thanksCheckMark READ thanksCheckMarkPoints CONSTANT)
    Q_PROPERTY(qreal thanksImageScale MEMBER thanksImageScale CONSTANT)
    Q_PROPERTY(qreal thanksLabelScale MEMBER thanksLabelScale CONSTANT)
    Q_PROPERTY(int dissolveDuration READ dissolveMilliseconds CONSTANT)
    Q_PROPERTY(int entryDuration READ entryMilliseconds CONSTANT)
    Q_PROPERTY(int slideOutDuration READ slideOutMilliseconds CONSTANT)
    Q_PROPERTY(int keyboardDuration READ keyboardMilliseconds CONSTANT)
    Q_PROPERTY(int transitionDuration READ transitionMilliseconds CONSTANT)
    Q_PROPERTY(int checkDuration READ checkMilliseconds CONSTANT)
    Q_PROPERTY(int thanksLabelDuration READ thanksLabelMilliseconds CONSTANT)
    Q_PROPERTY(int thanksLabelDelay READ thanksLabelDelayMilliseconds CONSTANT)
    Q_PROPERTY(int thanksImageDuration READ thanksImageMilliseconds CONSTANT)
    Q_PROPERTY(int thanksImageDelay READ thanksImageDelayMilliseconds CONSTANT)
    Q_PROPERTY(int finishDelay READ finishMilliseconds CONSTANT)

    using Duration = std::chrono::milliseconds;
    using CheckMark = std::array<QPointF, 3>;

public:
    /// Space around and between views.
    int tinyPadding = KestrioUI::Padding::tiny;
    int regularPadding = KestrioUI::Padding::regular;
    int mediumPadding = KestrioUI::Padding::medium;
    /// Radii of rounded corners: of answers, buttons and fields, and of the frame of a scale.
    int smallRadius = KestrioUI::CornerRadius::r3;
    int regularRadius = KestrioUI::CornerRadius::r5;
    /// Width of border lines, and of the lines between the answers of a scale.
    int borderWidth = KestrioUI::BorderWidth::b1;
    /// The ring around a focused control, inside the control's edge.
    int focusRingInset = 3;
    int focusRingWidth = 2;

    /// The card.
    int cardMaxWidth = 500;
    int cardRadius = 14;
    /// Space below the card in a window that is regular in both directions.
    int cardBottomPadding = 14;
    /// The length from which a window is regular in one direction, and not compact.
    int leastRegularLength = 600;

    /// The close button, a circle.
    int closeButtonSize = 26;
    int closeButtonLineWidth = 2;
    /// Space around the cross.
    int crossInset = 8;
    qreal pressedCloseButtonOpacity = 0.3;

    /// The dots that stand for the pages.
    int pageControlHeight = 26;
    int dotSize = 7;
    /// Size of an outermost dot beyond which there are more pages.
    int edgeDotSize = 4;
    /// Distance between the centres of neighbouring dots.
    int dotPitch = 16;

    /// The scroll bar at the card's edge.
    int scrollBarBreadth = 12;
    int scrollThumbBreadth = 4;
    int leastScrollThumbLength = 24;
    /// How far an arrow key or one line of the wheel scrolls.
    int scrollLine = 20;
    /// Minimum distance between a revealed control and the edge of the page.
    int revealMargin = KestrioUI::Padding::tiny;

    /// The answers of a scale, in one frame.
    int scaleHeight = 50;
    /// Minimum space around the numbers.
    int scaleTitleInset = 2;

    /// Space around the titles of options.
    int optionHorizontalInset = 14;
    int optionVerticalInset = 12;

    /// The check boxes. They are drawn in a square of `checkBoxDrawingSize`, which is then scaled
    /// to `checkBoxSize`.
    int checkBoxSize = 16;
    int checkBoxDrawingSize = 20;
    /// Space around the box in the drawing.
    int checkBoxDrawingInset = 1;
    /// The ends and the corner of the check mark in the drawing.
    CheckMark checkMark{{{5, 10}, {9, 14}, {15, 7}}};
    int checkBoxLineWidth = 1;
    /// The line width in palettes that keep contrast. It fills whole pixels at scale 1.
    int contrastCheckBoxLineWidth = 2;
    qreal pressedCheckBoxOpacity = 0.5;

    /// The text field. The inset is the space around the text.
    int textFieldHeight = 80;
    int textFieldInset = 12;
    int focusedTextFieldBorderWidth = 2;
    int caretWidth = 2;

    /// Space around the entries of the text field's context menu.
    int menuHorizontalInset = 24;
    int menuVerticalInset = 6;

    /// The thank-you page. Its check mark is in a circle. The scales are those at which the views
    /// appear.
    int thanksCircleSize = 100;
    int thanksLineWidth = 6;
    CheckMark thanksCheckMark{{{25, 50}, {45, 70}, {75, 35}}};
    qreal thanksImageScale = 0.5;
    qreal thanksLabelScale = 0.7;

    /// Fade of the dimming, in and out.
    Duration dissolve{200};
    /// The card's way in, as a spring, and its way out.
    Duration entry{400};
    Duration slideOut{200};
    /// Qt does not report how long an on-screen keyboard takes to appear. Most take this long.
    Duration keyboard{250};
    /// Each of the three steps of a page transition.
    Duration transition{200};
    /// The change of a check mark.
    Duration check{100};
    /// The springs of the thank-you page, and how long the page stays.
    Duration thanksLabel{300};
    Duration thanksLabelWait{200};
    Duration thanksImage{400};
    Duration thanksImageWait{400};
    Duration finish{1000};

    /// How long a window may be hidden before its survey ends.
    Duration absence{2000};
    /// How often a survey takes the focus back from a persistent host.
    int mostFocusReturns = 5;

private:
    QList<QPointF> checkMarkPoints() const { return {checkMark.begin(), checkMark.end()}; }
    QList<QPointF> thanksCheckMarkPoints() const {
        return {thanksCheckMark.begin(), thanksCheckMark.end()};
    }
    int dissolveMilliseconds() const { return int(dissolve.count()); }
    int entryMilliseconds() const { return int(entry.count()); }
    int slideOutMilliseconds() const { return int(slideOut.count()); }
    int keyboardMilliseconds() const { return int(keyboard.count()); }
    int transitionMilliseconds() const { return int(transition.count()); }
    int checkMilliseconds() const { return int(check.count()); }
    int thanksLabelMilliseconds() const { return int(thanksLabel.count()); }
    int thanksLabelDelayMilliseconds() const { return int(thanksLabelWait.count()); }
    int thanksImageMilliseconds() const { return int(thanksImage.count()); }
    int thanksImageDelayMilliseconds() const { return int(thanksImageWait.count()); }
    int finishMilliseconds() const { return int(finish.count()); }
};

inline constexpr ScreenMetrics screenMetrics;

} // namespace KestrioKit
