#pragma once

#include "KestrioKit/Core/Session/SurveyPalettes.h"
#include "KestrioKit/Widgets/Drawing/SurveyColors.h"
#include "tests/support/Waiting.h"

#include <gtest/gtest.h>

#include <QTest>
#include <QWidget>

namespace KestrioKit {

inline const QColor theme(0x5B, 0x3D, 0xF5);
inline const SurveyColors colors(lightPalette(theme));

/// A white window with one view in it, as the card shows them.
class ViewTest : public testing::Test {
protected:
    ViewTest() { window.setPalette(Qt::white); }

    /// Shows the view at that width, as high as it asks for.
    template <typename View>
    View *show(View *view, int width) {
        view->setParent(&window);
        const int height =
            view->hasHeightForWidth() ? view->heightForWidth(width) : view->sizeHint().height();
        view->setGeometry(0, 0, width, height);
        window.resize(view->size());
        view->show();
        window.show();
        window.activateWindow();
        EXPECT_TRUE(
            QTest::qWaitForWindowActive(&window, int(std::chrono::milliseconds(patience).count())));
        return view;
    }

    /// In device-independent pixels.
    QColor colorAt(double x, double y) {
        const QImage picture = window.grab().toImage();
        const double ratio = picture.devicePixelRatio();
        return picture.pixelColor(int(x * ratio), int(y * ratio));
    }

    QWidget window;
};

inline bool isNear(const QColor &one, const QColor &other, int distance = 3) {
    return std::abs(one.red() - other.red()) <= distance &&
           std::abs(one.green() - other.green()) <= distance &&
           std::abs(one.blue() - other.blue()) <= distance;
}

} // namespace KestrioKit
