#include "host/CommandTable.h"
#include "host/ConditionWait.h"
#include "host/Report.h"
#include "host/ScreenReader.h"

#include "KestrioKit/Kestrio.h"

#include <QWindow>

#include <private/qguiapplication_p.h>
#include <qpa/qplatformintegration.h>

#include <array>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// In pixels. An image of a window of this size still fits into memory.
constexpr int longestSide = 8192;
constexpr auto patience = 5s;

std::optional<QSize> parseSize(const QStringList &words) {
    bool isWidth = false;
    bool isHeight = false;
    const QSize size(words[0].toInt(&isWidth), words[1].toInt(&isHeight));
    if (!isWidth || !isHeight || size.isEmpty() || size.width() > longestSide ||
        size.height() > longestSide)
        return std::nullopt;
    return size;
}

Outcome noSize() {
    return Outcome::failed(u"width and height are whole numbers from 1 to %1"_s.arg(longestSide));
}

/// Returns whether the window is active, or cannot be activated by a program. On Wayland the system
/// alone decides, and without a keyboard no window is active.
bool isActive(const HostWindow &window) {
    return window.isActive() || !QGuiApplicationPrivate::platformIntegration()->hasCapability(
                                    QPlatformIntegration::WindowActivation);
}

/// Continues when the system shows the window, active and at that size. The content is laid out in
/// the next iteration of the event loop, so two checks in a row must succeed.
Outcome waitForWindow(const CommandCall &call, const QSize &size) {
    ConditionWait::start(
        [&window = *call.state.window, size,
         before = false](const ConditionWait::Answer &answer) mutable {
            const bool isUp =
                window.inputWindow().isExposed() && isActive(window) && window.size() == size;
            answer(std::exchange(before, isUp) && isUp);
        },
        patience,
        [completion = call.completion](bool holds) {
            completion(holds ? std::nullopt
                             : std::optional(u"the system does not show such a window"_s));
        });
    return Outcome::later();
}

Outcome showWindow(const CommandCall &call) {
    const auto size = parseSize(call.arguments);
    if (!size)
        return noSize();
    if (!call.state.window) {
        call.state.window = call.state.makeWindow();
        if (!call.state.window)
            return Outcome::failed(u"the window cannot be created"_s);
        // Qt Quick Controls leak memory if they are created while a screen reader runs.
        startScreenReader();
    }
    call.state.window->resize(*size);
    call.state.window->show();
    call.state.window->activate();
    return waitForWindow(call, *size);
}

Outcome resizeWindow(const CommandCall &call) {
    const auto size = parseSize(call.arguments);
    if (!size)
        return noSize();
    if (!call.state.window)
        return Outcome::noWindow();
    call.state.window->resize(*size);
    return waitForWindow(call, *size);
}

Outcome present(const CommandCall &call) {
    if (!call.state.window)
        return Outcome::noWindow();
    Kestrio::shared().presentSurvey(call.state.window->presenter());
    return Outcome::done();
}

Outcome presentById(const CommandCall &call) {
    bool isNumber = false;
    const qint64 id = call.arguments[0].toLongLong(&isNumber);
    if (!isNumber)
        return Outcome::failed(u"\"%1\" is no survey's number"_s.arg(call.arguments[0]));
    if (!call.state.window)
        return Outcome::noWindow();
    Kestrio::shared().presentSurvey(id, call.state.window->presenter(),
                                    [id] { Report().number("fetched", id).print(); });
    return Outcome::done();
}

Outcome presentDebugSurvey(const CommandCall &call) {
    if (!call.state.window)
        return Outcome::noWindow();
    Kestrio::shared().presentDebugSurvey(call.state.window->presenter());
    return Outcome::done();
}

Outcome takeScreenshot(const CommandCall &call) {
    if (!call.state.window)
        return Outcome::noWindow();
    const QString &file = call.arguments[0];
    return call.state.window->picture().save(file, "PNG")
               ? Outcome::done()
               : Outcome::failed(u"cannot write \"%1\""_s.arg(file));
}

constexpr std::array commands{
    Command{"window"_L1, "W H"_L1, Arity::exactly(2), showWindow},
    Command{"resize"_L1, "W H"_L1, Arity::exactly(2), resizeWindow},
    Command{"present"_L1, {}, Arity::exactly(0), present},
    Command{"present-id"_L1, "ID"_L1, Arity::exactly(1), presentById},
    Command{"debug-survey"_L1, {}, Arity::exactly(0), presentDebugSurvey},
    Command{"screenshot"_L1, "FILE"_L1, Arity::exactly(1), takeScreenshot},
};

} // namespace

std::span<const Command> windowCommands() {
    return commands;
}
