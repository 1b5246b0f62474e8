#pragma once

#include "KestrioKit/Core/Platform/Error.h"

#include <QString>

namespace KestrioKit {

/// Why a JSON text is not the record it should be, and where.
struct DecodingError {
    enum class Reason { notJSON, keyNotFound, typeMismatch };

    Reason reason = Reason::notJSON;
    /// Where, from the outermost record on: "questions[2].props.message"; empty for the whole text.
    QString path;
    QString description;

    /// The same as a general error.
    Error toError() const;

    /// Puts `key` in front of the path; called by each enclosing record on the way out.
    void enterKey(QLatin1StringView key);
    void enterKey(const QString &key);
    /// Puts `[index]` in front of the path.
    void enterIndex(qsizetype index);

    friend bool operator==(const DecodingError &, const DecodingError &) = default;
};

} // namespace KestrioKit
