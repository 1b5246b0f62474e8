#pragma once

#include <memory>
#include <string_view>

#include <QByteArray>
#include <QString>

namespace KestrioKit {

/// Writes one JSON text (RFC 8259) without blanks, with the keys in the order in which they come.
/// The calls must nest properly, and each value within an object must follow its key.
class JSONWriter {
public:
    JSONWriter();
    ~JSONWriter();

    void beginObject();
    /// A name of ours, with nothing in it that JSON escapes.
    void key(std::string_view name);
    void key(const QString &name);
    void endObject();
    void beginArray();
    void endArray();

    void string(const QString &text);
    void integer(qint64 number);
    void unsignedInteger(quint64 number);
    /// In the shortest form that reads back the same; infinite and NaN, which JSON lacks, as null.
    void number(double number);
    void boolean(bool value);

    /// What was written so far.
    QByteArray text() const;

private:
    struct Output;
    std::unique_ptr<Output> m_output;
};

} // namespace KestrioKit
