#include "KestrioKit/Widgets/Drawing/OwnLook.h"

#include <QApplication>
#include <QPointer>
#include <QStyle>
#include <QStyleFactory>
#include <QWidget>

namespace KestrioKit {

using namespace Qt::StringLiterals;

namespace {

/// This style is part of Qt on every platform.
constexpr auto styleName = "Fusion"_L1;
/// A size in pixels that no widget reaches. Together with borders and margins it stays below Qt's
/// own limit.
constexpr int unlimitedSize = 1'000'000;

} // namespace

QStyle *ownStyle() {
    static auto *const style = new QPointer<QStyle>;
    if (!*style) {
        *style = QStyleFactory::create(styleName);
        (*style)->setParent(qApp);
    }
    return *style;
}

QString undoingDeclarations() {
    return u"background: none; border: none; border-image: none; image: none; margin: 0;"
           " padding: 0; min-width: 0; min-height: 0; max-width: %1px; max-height: %1px;"_s.arg(
               unlimitedSize);
}

// The nearest style sheet wins, and it also passes the style on to all descendants.
void keepOwnLook(QWidget *view) {
    view->setStyle(ownStyle());
    view->setStyleSheet(u"* { %1 }"_s.arg(undoingDeclarations()));
}

} // namespace KestrioKit
