#pragma once

#include "KestrioKit/Core/Platform/JSON/JSONCoding.h"

#include <QString>

namespace KestrioKit {

/// The captions at the two ends of a scale.
struct Labels {
    QString left;
    QString right;

    friend bool operator==(const Labels &, const Labels &) = default;
};

template <>
inline constexpr auto keyTable<Labels> = std::tuple(required("left", &Labels::left),
                                                    required("right", &Labels::right));

} // namespace KestrioKit
