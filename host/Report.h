#pragma once

#include "KestrioKit/Core/Platform/JSON/JSONWriter.h"

#include <QString>

#include <functional>
#include <optional>
#include <string_view>

/// Writes null when there is no text.
void writeTextOrNull(KestrioKit::JSONWriter &json, const std::optional<QString> &text);

/// One JSON object, written to standard output as one line that begins with its brace and never
/// mixes with the library's log lines. Its keys stand in the order in which they were added.
///
///     Report().text("ask", event).text("state", state).print();
class Report {
public:
    Report() { m_json.beginObject(); }

    /// Null when there is no text, or number.
    Report &text(std::string_view key, const std::optional<QString> &value);
    Report &number(std::string_view key, std::optional<qint64> value);
    Report &boolean(std::string_view key, bool value);
    /// `write` writes the value, whatever it is.
    Report &value(std::string_view key,
                  const std::function<void(KestrioKit::JSONWriter &json)> &write);

    /// Ends the object and writes the line. To be called once.
    void print();

private:
    KestrioKit::JSONWriter m_json;
};
