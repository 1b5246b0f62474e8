#include "KestrioKit/Core/Platform/Threads/Clock.h"

namespace KestrioKit {

namespace {

class SystemClock final : public Clock {
public:
    DispatchTime now() const override {
        return {std::chrono::steady_clock::now().time_since_epoch()};
    }
    double secondsSince1970() const override {
        const auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
        return std::chrono::duration<double>(sinceEpoch).count();
    }
};

} // namespace

QString printedForm(DispatchTime time) {
    return QString::number(std::chrono::duration<double>(time.sinceReference).count(), 'f', 3);
}

const Clock &Clock::system() {
    // Never destroyed, since the library's thread may still use it while the process ends.
    static const auto *const clock = new SystemClock;
    return *clock;
}

} // namespace KestrioKit
