#pragma once

#include "KestrioKit/Core/Platform/JSON/JSONWriter.h"

#include <QString>

#include <functional>
#include <optional>
#include <string_view>

/// Writes the text as a JSON value, or null if there is no text.
void writeTextOrNull(KestrioKit::JSONWriter &json, const std::optional<QString> &text);

/// A JSON object that is written to standard output on a single line. The line starts with a brace
/// and is never mixed with the library's log lines. Keys keep the order in which they are added.
///
///     Report().text("ask", event).text("state", state).print();
class Report {
public:
    Report() { m_json.beginObject(); }

    /// Adds a text or a number; an absent value is written as null.
    Report &text(std::string_view key, const std::optional<QString> &value);
    Report &number(std::string_view key, std::optional<qint64> value);
    Report &boolean(std::string_view key, bool value);
    /// Adds a value of any kind, which `write` writes.
    Report &value(std::string_view key,
                  const std::function<void(KestrioKit::JSONWriter &json)> &write);

    /// Completes the object and writes the line. Call it once.
    void print();

private:
    KestrioKit::JSONWriter m_json;
};
