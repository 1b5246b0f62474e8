#include "host/window/DemoStyle.h"

#include "host/window/DemoPalette.h"

#include <QApplication>

using namespace Qt::StringLiterals;

namespace {

constexpr auto styleSheet = R"(
    QLabel[look="title"] { font-size: 22px; font-weight: 700; }
    QLabel[look="heading"] { font-size: 14px; font-weight: 600; }
    QLabel[look="quiet"] { color: #666c70; }
    QLabel[look="total"] { font-size: 18px; font-weight: 600; }
    Card { background: white; border: 1px solid #e2ded5; border-radius: 10px; }
    QLineEdit, QPlainTextEdit { background: white; border: 1px solid #cdc9c0; border-radius: 6px; }
    QLineEdit { padding: 0 8px; min-height: 28px; }
    QPlainTextEdit { padding: 4px; }
    QLineEdit:focus, QPlainTextEdit:focus { border: 2px solid #1d6b57; }
    QLineEdit:focus { padding: 0 7px; min-height: 26px; }
    QPushButton { background: #f7f6f2; border: 1px solid #cdc9c0; border-radius: 6px;
        padding: 0 10px; min-height: 28px; }
    QPushButton:hover { background: #eeece5; }
    QPushButton:pressed { background: #e2ded5; }
    QPushButton:focus { border: 2px solid #1d6b57; padding: 0 9px; min-height: 26px; }
    QPushButton[look="primary"] { background: #1d6b57; border-color: #1d6b57; color: white;
        font-weight: 600; padding: 0 22px; min-height: 38px; }
    QPushButton[look="primary"]:hover { background: #217a63; }
    QPushButton[look="primary"]:pressed { background: #175646; }
    QPushButton[look="primary"]:focus { border: 2px solid #1f262b; padding: 0 21px;
        min-height: 36px; }
)"_L1;

} // namespace

void applyDemoStyle() {
    QApplication::setStyle(u"Fusion"_s);
    QApplication::setPalette(demoPalette());
    QApplication::setFont(demoFont());
}

QString demoStyleSheet() {
    return styleSheet;
}
