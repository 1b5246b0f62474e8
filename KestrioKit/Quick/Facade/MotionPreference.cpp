#include "KestrioKit/Quick/Facade/MotionPreference.h"

#include <utility>

namespace KestrioKit {

MotionPreference &MotionPreference::shared() {
    static auto *const preference = new MotionPreference;
    return *preference;
}

void MotionPreference::setReduced(bool isReduced) {
    if (std::exchange(m_isReduced, isReduced) != isReduced)
        Q_EMIT changed();
}

} // namespace KestrioKit
