#pragma once

#include "KestrioKit/Core/Platform/Error.h"

#include <QString>

namespace KestrioKit {

/// The reason why a JSON text could not be decoded, and the position of the error.
struct DecodingError {
    enum class Reason { notJSON, keyNotFound, typeMismatch };

    Reason reason = Reason::notJSON;
    /// The path to the error from the outermost record: "questions[2].props.message". Empty for the
    /// whole text.
    QString path;
    /// The reason in English, for developers.
    QString description;

    /// Returns this as a general error of `decodingErrorDomain`.
    Error toError() const;

    /// Prepends `key` to the path. Called by each enclosing record while the error is passed
    /// outwards.
    void enterKey(QLatin1StringView key);
    void enterKey(const QString &key);
    /// Prepends `[index]` to the path.
    void enterIndex(qsizetype index);

    friend bool operator==(const DecodingError &, const DecodingError &) = default;
};

} // namespace KestrioKit
