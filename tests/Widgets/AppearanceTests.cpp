#include "KestrioKit/Core/Session/Contrast.h"
#include "KestrioKit/Core/Session/SurveyFlow.h"
#include "KestrioKit/Core/Session/SurveyPalettes.h"
#include "KestrioKit/Core/Session/SurveySessionPrivate.h"
#include "KestrioKit/Widgets/Controls/ActionButton.h"
#include "KestrioKit/Widgets/Controls/CheckboxButton.h"
#include "KestrioKit/Widgets/Controls/CloseButton.h"
#include "KestrioKit/Widgets/Controls/ImageView.h"
#include "KestrioKit/Widgets/Controls/Label.h"
#include "KestrioKit/Widgets/Controls/PageControl.h"
#include "KestrioKit/Widgets/Controls/ScrollIndicator.h"
#include "KestrioKit/Widgets/Controls/TextView.h"
#include "KestrioKit/Widgets/Questions/ScaleRow.h"
#include "KestrioKit/Widgets/Survey/SurveyView.h"
#include "tests/support/Waiting.h"
#include "tests/Widgets/StillStyle.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QMenu>
#include <QTest>

namespace KestrioKit {

using namespace Qt::StringLiterals;

namespace {

constexpr int cardWidth = 390;

QPalette hostPalette(const QColor &ink, const QColor &paper) {
    return {ink, paper, paper, paper, paper, ink, ink, paper, paper};
}

/// An appearance, and the host's palette under it.
const struct Look {
    const char *name;
    SurveyAppearance appearance;
    QPalette host;
} looks[] = {
    {"dark", SurveyAppearance::dark, {}},
    {"system, dark", SurveyAppearance::system, hostPalette(0xdddddd, 0x32363b)},
    {"system, yellow on black", SurveyAppearance::system, hostPalette(Qt::yellow, Qt::black)},
    {"system, black on white", SurveyAppearance::system, hostPalette(Qt::black, Qt::white)},
};

const QColor accents[] = {Qt::black, Qt::white, Qt::yellow, 0x808080, Qt::blue};

const QuestionType::Kind kinds[] = {QuestionType::likert, QuestionType::multipleChoice,
                                    QuestionType::multiSelect, QuestionType::nps,
                                    QuestionType::open};
const char *const pages[] = {"likert", "multiple choice", "multi-select", "nps", "open", "thanks"};

Survey surveyOfEachType() {
    Survey survey;
    for (const auto kind : kinds) {
        Question question;
        question.type.kind = kind;
        question.details.text = u"How much?"_s;
        question.details.labels = Labels{u"Little"_s, u"Much"_s};
        question.details.options = QList<Option>{{1, u"Milk"_s, u"m"_s}, {2, u"Tea"_s, u"t"_s}};
        survey.questions.append(question);
    }
    return survey;
}

} // namespace

/// The card with a survey of every type of question, and what is measured on it.
class Appearance : public testing::Test {
protected:
    Appearance() {
        QApplication::setStyle(new StillStyle);
        window.resize(cardWidth, 600);
    }
    ~Appearance() override {
        card.reset();
        QApplication::setPalette({});
    }

    void begin(SurveyAppearance appearance, const QColor &accent) {
        card.reset();
        flow.reset();
        flow = std::make_unique<SurveyFlow>(
            SurveySessionPrivate::make(
                surveyOfEachType(),
                {.clock = Clock::system(), .themeColor = accent, .appearance = appearance}),
            [] { return false; });
        card = std::make_unique<SurveyView>(*flow, Clock::system());
        card->setParent(&window);
        QObject::connect(card.get(), &SurveyView::heightChanged, card.get(), [this] { place(); });
        place();
        card->show();
        window.show();
        window.activateWindow();
        EXPECT_TRUE(
            QTest::qWaitForWindowActive(&window, int(std::chrono::milliseconds(patience).count())));
        flow->begin();
    }
    void place() { card->setGeometry(0, 0, cardWidth, card->heightForWidth(cardWidth)); }

    /// The contrast of what stands out most in that part of a view with the part's background, the
    /// colour of most pixels.
    double contrast(const QWidget *view, const QRect &part) {
        const QRect place(view->mapTo(card.get(), part.topLeft()), part.size());
        return contrast(card->grab(place).toImage());
    }
    static double contrast(const QImage &picture) {
        QHash<QRgb, int> counts;
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x)
                ++counts[picture.pixel(x, y)];
        }
        const auto most = std::max_element(counts.begin(), counts.end());
        double greatest = 1;
        for (auto color = counts.keyBegin(); color != counts.keyEnd(); ++color)
            greatest = std::max(greatest, contrastRatio(QColor(*color), QColor(most.key())));
        return greatest;
    }
    void text(const QWidget *view, const QRect &part, const char *what = "text") {
        check(leastText, contrast(view, part), leastTextContrast, what);
    }
    void symbol(const QWidget *view, const QRect &part, const char *what) {
        check(leastSymbol, contrast(view, part), leastSymbolContrast, what);
    }
    static void check(double &least, double found, double required, const char *what) {
        EXPECT_GE(found, required) << what;
        least = std::min(least, found);
    }

    void measureFrame() {
        symbol(card.get(), QRect(0, card->height() / 2, 6, 1), "edge of the card");
        const auto *const dots = card->findChild<PageControl *>();
        for (int page = 0; page < std::ssize(kinds); ++page)
            symbol(dots, QRect(page * 16, 5, 16, 16), "dot");
        auto *const close = card->findChild<CloseButton *>();
        measureStates(close, [&] {
            symbol(close, QRect(7, 7, 12, 12), "cross");
            symbol(close, QRect(0, 12, 3, 2), "edge of the close button");
        });
        symbol(close, QRect(2, 12, 6, 2), "focus ring");
    }
    /// Calls `measure` for the button as it is, pressed, and with the focus that it then keeps.
    void measureStates(QWidget *button, const std::function<void()> &measure) {
        measure();
        QTest::mousePress(button, Qt::LeftButton);
        measure();
        button->clearFocus();
        button->setFocus(Qt::TabFocusReason);
        if (button->width() > 2 * 7)
            symbol(button, QRect(1, button->height() / 2, 7, 1), "focus ring, pressed");
        QTest::mouseRelease(button, Qt::LeftButton, {}, QPoint(-50, -50));
        measure();
    }
    void measureButton(QAbstractButton *button) {
        const QRect area = button->rect();
        const QRect inner = area.adjusted(7, 7, -7, -7);
        auto *const box = qobject_cast<CheckboxButton *>(button);
        measureStates(button, [&] {
            text(button, box ? inner.adjusted(30, 0, 0, 0) : inner);
            if (!box)
                return;
            symbol(box, QRect(10, area.height() / 2, 6, 2), "edge of the box");
            box->setChecked(true);
            symbol(box, QRect(10, area.height() / 2, 6, 2), "edge of the checked box");
            symbol(box, QRect(16, area.height() / 2 - 6, 12, 12), "check mark");
            box->setChecked(false);
        });
        symbol(button, QRect(2, area.height() / 2, 6, 1), "focus ring");
        if (button->inherits("KestrioKit::ActionButton"))
            symbol(card.get(), QRect(button->mapTo(card.get(), QPoint(-6, 18)), QSize(8, 2)),
                   "action button");
        else if (!qobject_cast<ScaleRow *>(button->parentWidget()))
            symbol(button, QRect(0, area.height() / 2, 6, 1), "border");
    }
    void measureField(TextView *field) {
        symbol(field, QRect(0, 40, 6, 1), "edge of the field");
        field->setFocus();
        symbol(field, QRect(8, 14, 12, 12), "caret");
        field->setPlainText(u"Typed\n\n\n\n\n\n"_s);
        text(field, QRect(8, 8, 60, 24), "typed");
        symbol(field, QRect(cardWidth - 32 - 14, 10, 12, 16), "scroll bar");
        field->selectAll();
        text(field, QRect(13, 14, 40, 16), "selected");
        field->clear();
    }
    void measureMenu(TextView *field) {
        // The offscreen platform warns of what it cannot do for a menu.
        const auto handler = qInstallMessageHandler([](auto, auto &, auto &) {});
        QContextMenuEvent event(QContextMenuEvent::Keyboard, {}, field->mapToGlobal(QPoint()));
        QCoreApplication::sendEvent(field, &event);
        auto *const menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
        menu->setActiveAction(menu->actions().last());
        for (QAction *const action : menu->actions()) {
            const QRect place = menu->actionGeometry(action);
            if (!action->isSeparator())
                check(leastText, contrast(menu->grab(place.adjusted(24, 3, -24, -3)).toImage()),
                      leastTextContrast, "menu");
        }
        menu->close();
        qInstallMessageHandler(handler);
    }
    void measurePage() {
        for (const auto *const label : card->findChildren<Label *>())
            text(label, label->rect());
        for (auto *const button : card->findChildren<QAbstractButton *>()) {
            if (!qobject_cast<CloseButton *>(button))
                measureButton(button);
        }
        if (const auto *const row = card->findChild<ScaleRow *>()) {
            const auto *const first = row->findChild<QAbstractButton *>();
            symbol(row, QRect(0, 25, 3, 1), "frame of the scale");
            symbol(row, QRect(first->width() - 2, 25, 5, 1), "line between numbers");
        }
        if (auto *const field = card->findChild<TextView *>())
            measureField(field);
        if (const auto *const image = card->findChild<ImageView *>())
            symbol(image, image->rect(), "check mark in a circle");
    }
    void measureScrollIndicator() {
        card->resize(cardWidth, card->height() - 60);
        const auto *const indicator = card->findChild<ScrollIndicator *>();
        symbol(indicator, QRect(0, 10, indicator->width(), 4), "scroll indicator");
        place();
    }
    void answerPage() {
        const QVariant answers[] = {3, QVariantMap{{u"1"_s, u"m"_s}}, QVariantMap{}, 3, QString()};
        flow->answer(answers[flow->currentPage()]);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    QWidget window;
    std::unique_ptr<SurveyFlow> flow;
    std::unique_ptr<SurveyView> card;
    double leastText = 21;
    double leastSymbol = 21;
};

// The figures of docs/appearance.md: the least over all accents, for each page.
TEST_F(Appearance, HasTheContrastThatTheGuidelinesAskForOnEveryPage) {
    for (const Look &look : looks) {
        QApplication::setPalette(look.host);
        QList<std::pair<double, double>> least(std::size(pages), {21, 21});
        for (const QColor &accent : accents) {
            begin(look.appearance, accent);
            for (int page = 0; page < std::ssize(pages); ++page) {
                SCOPED_TRACE(std::string(look.name) + ", " + pages[page] + ", accent " +
                             accent.name().toStdString());
                leastText = leastSymbol = 21;
                if (!card->isFinished()) {
                    measureFrame();
                    measureScrollIndicator();
                }
                measurePage();
                if (auto *const field = card->findChild<TextView *>())
                    measureMenu(field);
                least[page].first = std::min(least[page].first, leastText);
                least[page].second = std::min(least[page].second, leastSymbol);
                answerPage();
            }
        }
        for (int page = 0; page < std::ssize(pages); ++page)
            RecordProperty(std::string(look.name) + " | " + pages[page],
                           QString::asprintf("%.1f | %.1f", least[page].first, least[page].second)
                               .toStdString());
    }
}

// The guidelines' own figures, and every fifth colour of a coarse cube.
TEST(Contrast, AccentsAreShadedJustSoFarAsItTakes) {
    EXPECT_NEAR(contrastRatio(Qt::black, Qt::white), 21, 0.001);
    EXPECT_NEAR(contrastRatio(0x777777, Qt::white), 4.478, 0.001);
    for (const QRgb card : {0x000000, 0x24222c, 0x767676, 0x808080, 0xc0c0c0, 0xffffff}) {
        for (int step = 0; step < 4096; step += 5) {
            const QColor accent((step >> 8) * 17, (step >> 4 & 15) * 17, (step & 15) * 17);
            const QColor shade = shaded(accent, card, leastTextContrast);
            const double ratio = contrastRatio(shade, card);
            ASSERT_GE(ratio, leastTextContrast) << qPrintable(accent.name());
            ASSERT_TRUE(shade == accent || ratio < 4.8) << qPrintable(accent.name());
            ASSERT_GE(contrastRatio(strongestOn(shade), shade), leastTextContrast);
        }
    }
}

TEST_F(Appearance, FollowsTheHostsPaletteAndFontWhileItIsShown) {
    const QFont font = QApplication::font();
    const auto cardColor = [this] {
        return card->grab(QRect(20, 4, 1, 1)).toImage().pixel(0, 0);
    };
    for (const auto appearance : {SurveyAppearance::system, SurveyAppearance::dark}) {
        QApplication::setPalette(looks[1].host);
        begin(appearance, Qt::blue);
        for (int page = 0; page < std::ssize(pages); ++page) {
            SCOPED_TRACE(pages[page]);
            const bool follows = appearance == SurveyAppearance::system;
            const int height = card->height();
            const QRgb before = cardColor();
            QFont large = font;
            large.setPointSizeF(20);
            QApplication::setFont(large);
            QApplication::setPalette(looks[3].host);
            QCoreApplication::processEvents();
            EXPECT_EQ(cardColor(), follows ? 0xffffffff : before);
            EXPECT_EQ(card->height() > height, follows);
            for (const auto *const button : card->findChildren<QAbstractButton *>()) {
                const QRect place(button->mapTo(card.get(), QPoint()), button->size());
                EXPECT_TRUE(card->rect().contains(place)) << qPrintable(button->objectName());
            }
            if (follows)
                measurePage();
            QApplication::setFont(font);
            QApplication::setPalette(looks[1].host);
            QCoreApplication::processEvents();
            EXPECT_EQ(cardColor(), before);
            EXPECT_EQ(card->height(), height);
            answerPage();
        }
    }
}

} // namespace KestrioKit
