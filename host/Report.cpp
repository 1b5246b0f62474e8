#include "host/Report.h"

#include "KestrioKit/Core/Platform/Logging.h"

#include <QtNumeric>

void writeTextOrNull(KestrioKit::JSONWriter &json, const std::optional<QString> &text) {
    if (text)
        json.string(*text);
    else
        json.number(qQNaN()); // written as null
}

Report &Report::text(std::string_view key, const std::optional<QString> &value) {
    m_json.key(key);
    writeTextOrNull(m_json, value);
    return *this;
}

Report &Report::number(std::string_view key, std::optional<qint64> value) {
    m_json.key(key);
    if (value)
        m_json.integer(*value);
    else
        m_json.number(qQNaN()); // written as null
    return *this;
}

Report &Report::boolean(std::string_view key, bool value) {
    m_json.key(key);
    m_json.boolean(value);
    return *this;
}

Report &Report::value(std::string_view key,
                      const std::function<void(KestrioKit::JSONWriter &)> &write) {
    m_json.key(key);
    write(m_json);
    return *this;
}

void Report::print() {
    m_json.endObject();
    KestrioKit::printLine(QString::fromUtf8(m_json.text()));
}
