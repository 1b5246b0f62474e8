#include "KestrioKit/Core/Session/Fonts.h"
#include "KestrioKit/Core/Session/KestrioUI.h"
#include "KestrioKit/Widgets/Controls/ActionButton.h"
#include "KestrioKit/Widgets/Controls/CheckboxButton.h"
#include "KestrioKit/Widgets/Controls/Label.h"
#include "KestrioKit/Widgets/Controls/PageControl.h"
#include "KestrioKit/Widgets/Controls/ThemedButton.h"
#include "tests/Widgets/ViewTest.h"

#include <QAccessible>
#include <QBitmap>
#include <QSignalSpy>
#include <QVariantAnimation>

namespace KestrioKit {

using namespace Qt::StringLiterals;

using Controls = ViewTest;

// Half and three tenths of it over white.
static constexpr QColor halfTheme(173, 158, 250);
static constexpr QColor paleTheme(206, 197, 252);

/// Where there is ink, in pixels of the screen.
static QRect inked(const QPixmap &picture) {
    return QRegion(picture.createHeuristicMask()).boundingRect();
}

TEST_F(Controls, CheckboxShowsWhetherItIsSelected) {
    auto *const button = show(new CheckboxButton(u"R&D"_s, colors), 200);
    const QPointF box(14, (button->height() - 16) / 2);
    const auto inBox = [&](double x, double y) {
        return colorAt(box.x() + x * 0.8, box.y() + y * 0.8);
    };
    for (const bool isChecked : {false, true, false}) {
        button->setChecked(isChecked);
        EXPECT_EQ(button->objectName(), isChecked ? u"Multi-select option: R&D-selected"_s
                                                  : u"Multi-select option: R&D"_s);
        EXPECT_TRUE(isNear(inBox(10, 4), isChecked ? theme : Qt::white));
        EXPECT_TRUE(isNear(inBox(17, 16), isChecked ? theme : Qt::white));
        EXPECT_TRUE(isNear(inBox(-5, 10), Qt::white));
        EXPECT_GT(inBox(12, 10.5).lightness(), isChecked ? theme.lightness() + 30 : 250);
    }
    EXPECT_EQ(colorAt(0.4, 20), theme);
    QTest::mousePress(button, Qt::LeftButton);
    EXPECT_TRUE(isNear(colorAt(0.4, 20), halfTheme));
    QTest::mouseRelease(button, Qt::LeftButton);
    EXPECT_FALSE(button->isChecked());
    button->toggleAnimated();
    button->toggleAnimated();
    for (auto *const animation : button->findChildren<QVariantAnimation *>())
        animation->setCurrentTime(animation->duration());
    EXPECT_TRUE(isNear(inBox(10, 4), Qt::white));
}

TEST_F(Controls, ThemedButtonTakesTheStateThatWasSetLast) {
    auto *const button =
        show(new ThemedButton(u"&Title"_s, colors, {.cornerRadius = 3, .borderWidth = 1}), 100);
    button->setSelected(true);
    EXPECT_TRUE(isNear(colorAt(6, 6), paleTheme));
    QTest::mousePress(button, Qt::LeftButton);
    button->setSelected(false);
    EXPECT_EQ(colorAt(6, 6), Qt::white);
    button->setSelected(true);
    QTest::mouseRelease(button, Qt::LeftButton);
    EXPECT_EQ(colorAt(6, 6), Qt::white);
}

TEST_F(Controls, ButtonsArePressedByKeyAndShowTheFocusToWhoUsesKeys) {
    auto *const button = show(new ActionButton(u"N&ext"_s, colors), 100);
    const QSignalSpy clicks(button, &QAbstractButton::clicked);
    const int ring = button->height() - 4;
    QTest::mouseClick(window.windowHandle(), Qt::LeftButton, {}, button->geometry().center());
    EXPECT_EQ(colorAt(50, ring), theme);
    button->clearFocus();
    button->setFocus(Qt::TabFocusReason);
    EXPECT_EQ(colorAt(50, ring), Qt::white);
    for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter, Qt::Key_Right})
        QTest::keyClick(window.windowHandle(), key);
    QTest::keyClick(window.windowHandle(), Qt::Key_E, Qt::AltModifier);
    EXPECT_EQ(clicks.count(), 4);
    EXPECT_FALSE(button->isHighlighted());
}

TEST_F(Controls, PageControlMarksTheCurrentPage) {
    struct {
        int pages, current, width, dot, page;
        double edge;
    } const cases[] = {{3, 1, 48, 1, 2, 3}, {3, 9, 48, 2, 3, 3}, {40, 12, 80, 2, 13, 1.5}};
    for (const auto direction : {Qt::LeftToRight, Qt::RightToLeft}) {
        for (const auto &known : cases) {
            auto *const pages = new PageControl(known.pages, {}, colors);
            pages->setLayoutDirection(direction);
            pages->setCurrentPage(known.current);
            show(pages, known.width);
            const int dots = known.width / 16;
            for (int dot = 0; dot < dots; ++dot) {
                const int place = direction == Qt::LeftToRight ? dot : dots - 1 - dot;
                EXPECT_EQ(colorAt(place * 16 + 8, 13),
                          QColor((dot == known.dot ? theme : colors->dot).rgb()));
                EXPECT_TRUE(isNear(colorAt(place * 16 + 13, 13), Qt::white));
            }
            EXPECT_FALSE(isNear(colorAt(8 + known.edge - 0.5, 13), Qt::white, 40));
            EXPECT_TRUE(isNear(colorAt(8 + known.edge + 1.5, 13), Qt::white));
            auto *const interface = QAccessible::queryAccessibleInterface(pages);
            EXPECT_EQ(interface->role(), QAccessible::ProgressBar);
            EXPECT_EQ(interface->text(QAccessible::Name),
                      u"%1 of %2"_s.arg(known.page).arg(known.pages));
            EXPECT_FALSE(interface->valueInterface());
            delete pages;
        }
    }
}

TEST_F(Controls, LabelsShowTheirTextWhole) {
    EXPECT_EQ(preferredFont(TextStyle::body).families(), QGuiApplication::font().families());
    for (const QString &text : {u"word "_s.repeated(400), u"Donaudampfschifffahrt"_s.repeated(90),
                                u"長い文章"_s.repeated(500), u"مرحبا بالعالم "_s.repeated(150)}) {
        Label label(text, TextStyle::body, colors);
        // Another script than the font's own has lines of another height.
        const int line = Label(text + u'\n' + text, TextStyle::body, colors).sizeHint().height() -
                         label.sizeHint().height();
        for (const int width : {60, 288, 468}) {
            const int lines = label.heightForWidth(width) / line;
            EXPECT_GE(lines * width, label.naturalWidth() * 0.9);
            label.resize(width, label.heightForWidth(width) + line);
            const QPixmap picture = label.grab();
            EXPECT_LT(inked(picture).bottom(), picture.height() - line / 2);
        }
    }
    EXPECT_EQ(Label(QString(), TextStyle::body, colors).sizeHint(), QSize(0, 0));
    EXPECT_EQ(inked(Label(u"ẪẶǕ"_s, TextStyle::title2, colors).grab()).height(),
              inked(Label(u"\nẪẶǕ\n"_s, TextStyle::title2, colors).grab()).height());
    const QString arabic = u"مرحبا (بالعالم)!"_s;
    EXPECT_EQ(Label(arabic, TextStyle::body, colors).grab().toImage(),
              Label(arabic + QChar(0x200F), TextStyle::body, colors).grab().toImage());
}

} // namespace KestrioKit
