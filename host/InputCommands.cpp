#include "host/CommandTable.h"

#include <QKeySequence>
#include <QTest>
#include <QWindow>

#include <array>

using namespace Qt::StringLiterals;

// Input is sent to the native window, so that it takes the same path as real input.

namespace {

constexpr Qt::MouseButton button = Qt::LeftButton;

// QTest treats the null point as the middle, so the point next to the corner replaces the corner.
QPoint placeFor(const QPoint &position) {
    return position.isNull() ? QPoint(1, 1) : position;
}

QWindow *inputWindow(const CommandCall &call) {
    return &call.state.window->inputWindow();
}

/// Calls `act` with the centre of the named control, in the window's coordinates.
template <typename Act>
Outcome atControl(const CommandCall &call, Act act) {
    if (!call.state.window)
        return Outcome::noWindow();
    const QString &identifier = call.arguments[0];
    const std::optional<VisibleView> control = call.state.window->visibleView(identifier);
    if (!control)
        return Outcome::failed(u"no \"%1\" can be seen"_s.arg(identifier));
    if (!control->isCentreInView)
        return Outcome::failed(u"\"%1\" is scrolled out of view"_s.arg(identifier));
    act(control->frame.center());
    return Outcome::done();
}

void pressAt(const CommandCall &call, const QPoint &position) {
    QWindow *const window = inputWindow(call);
    QTest::mouseMove(window, placeFor(position));
    QTest::mousePress(window, button, {}, placeFor(position));
    call.state.pressedAt = position;
}

void releaseAt(const CommandCall &call, const QPoint &position) {
    call.state.pressedAt.reset();
    QTest::mouseRelease(inputWindow(call), button, {}, placeFor(position));
}

Outcome click(const CommandCall &call) {
    return atControl(call, [&call](const QPoint &position) {
        pressAt(call, position);
        releaseAt(call, position);
    });
}

Outcome clickAt(const CommandCall &call) {
    bool isX = false;
    bool isY = false;
    const QPoint position(call.arguments[0].toInt(&isX), call.arguments[1].toInt(&isY));
    if (!isX || !isY)
        return Outcome::failed(u"X and Y are whole numbers"_s);
    if (!call.state.window)
        return Outcome::noWindow();
    if (!QRect(QPoint(), call.state.window->size()).contains(position))
        return Outcome::failed(u"that is outside of the window"_s);
    pressAt(call, position);
    releaseAt(call, position);
    return Outcome::done();
}

Outcome press(const CommandCall &call) {
    return atControl(call, [&call](const QPoint &position) { pressAt(call, position); });
}

Outcome release(const CommandCall &call) {
    if (!call.state.pressedAt)
        return Outcome::failed(u"nothing is pressed"_s);
    releaseAt(call, *call.state.pressedAt);
    return Outcome::done();
}

Outcome type(const CommandCall &call) {
    if (!call.state.window)
        return Outcome::noWindow();
    for (const char32_t character : call.arguments[0].toUcs4())
        QTest::sendKeyEvent(QTest::Click, inputWindow(call), Qt::Key_unknown,
                            QString::fromUcs4(&character, 1), Qt::NoModifier);
    return Outcome::done();
}

Outcome pressKey(const CommandCall &call) {
    const QString &name = call.arguments[0];
    const auto sequence = QKeySequence::fromString(name, QKeySequence::PortableText);
    if (sequence.count() != 1 || sequence[0].key() == Qt::Key_unknown)
        return Outcome::failed(u"\"%1\" is no key"_s.arg(name));
    if (!call.state.window)
        return Outcome::noWindow();
    Qt::Key key = sequence[0].key();
    // Keyboards send this key for Shift+Tab.
    if (key == Qt::Key_Tab && sequence[0].keyboardModifiers().testFlag(Qt::ShiftModifier))
        key = Qt::Key_Backtab;
    QTest::keyClick(inputWindow(call), key, sequence[0].keyboardModifiers());
    return Outcome::done();
}

constexpr std::array commands{
    Command{"click"_L1, "IDENTIFIER"_L1, Arity::exactly(1), click},
    Command{"click-at"_L1, "X Y"_L1, Arity::exactly(2), clickAt},
    Command{"press"_L1, "IDENTIFIER"_L1, Arity::exactly(1), press},
    Command{"release"_L1, {}, Arity::exactly(0), release},
    Command{"type"_L1, "TEXT"_L1, Arity::wholeLine(), type},
    Command{"key"_L1, "NAME"_L1, Arity::exactly(1), pressKey},
};

} // namespace

std::span<const Command> inputCommands() {
    return commands;
}
