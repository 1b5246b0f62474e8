#include "KestrioKit/Core/Session/Contrast.h"

#include <algorithm>
#include <cmath>

namespace KestrioKit {

namespace {

constexpr int shadingSteps = 100;

double linear(double channel) {
    return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double relativeLuminance(const QColor &color) {
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
           0.0722 * linear(color.blueF());
}

} // namespace

double contrastRatio(const QColor &one, const QColor &other) {
    const auto [darker, lighter] = std::minmax({relativeLuminance(one), relativeLuminance(other)});
    return (lighter + 0.05) / (darker + 0.05);
}

QColor mixed(const QColor &from, const QColor &to, double part) {
    const auto channel = [part](int start, int end) {
        return qRound(start + (end - start) * part);
    };
    return {channel(from.red(), to.red()), channel(from.green(), to.green()),
            channel(from.blue(), to.blue())};
}

QColor strongestOn(const QColor &background) {
    const QColor black(0, 0, 0);
    const QColor white(255, 255, 255);
    return contrastRatio(black, background) > contrastRatio(white, background) ? black : white;
}

QColor shaded(const QColor &color, const QColor &background, double leastRatio) {
    const QColor goal = strongestOn(background);
    for (int step = 0; step < shadingSteps; ++step) {
        const QColor shade = mixed(color, goal, double(step) / shadingSteps);
        if (contrastRatio(shade, background) >= leastRatio)
            return shade;
    }
    return goal;
}

} // namespace KestrioKit
