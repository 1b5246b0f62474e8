#pragma once

#include <memory>
#include <string_view>

#include <QByteArray>
#include <QString>

namespace KestrioKit {

/// Writes one JSON text (RFC 8259) in UTF-8, without whitespace and with the keys in the order of
/// the calls. The caller must nest the calls properly and write a key before each value of an
/// object.
class JSONWriter {
public:
    JSONWriter();
    ~JSONWriter();

    void beginObject();
    /// Writes the key of the next value. `name` must not contain characters that JSON escapes.
    void key(std::string_view name);
    /// Writes the key of the next value, escaped as needed.
    void key(const QString &name);
    void endObject();
    void beginArray();
    void endArray();

    void string(const QString &text);
    void integer(qint64 number);
    void unsignedInteger(quint64 number);
    /// Writes the shortest form that reads back as the same number. Infinity and NaN, which JSON
    /// lacks, are written as null.
    void number(double number);
    void boolean(bool value);

    /// Returns the text written so far.
    QByteArray text() const;

private:
    struct Output;
    std::unique_ptr<Output> m_output;
};

} // namespace KestrioKit
