#include "KestrioKit/Core/Platform/JSON/JSONWriter.h"

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <QStringEncoder>

#include <cmath>

namespace KestrioKit {

namespace {

/// Can also write keys without escaping: searching them for characters to escape took half of the
/// time.
class Writer final : public rapidjson::Writer<rapidjson::StringBuffer> {
public:
    using rapidjson::Writer<rapidjson::StringBuffer>::Writer;

    void plainKey(std::string_view name) {
        Prefix(rapidjson::kStringType);
        char *const out = os_->Push(name.size() + 2);
        out[0] = '"';
        name.copy(out + 1, name.size());
        out[name.size() + 1] = '"';
    }
};

} // namespace

struct JSONWriter::Output {
    rapidjson::StringBuffer buffer;
    Writer writer{buffer};
    QStringEncoder encoder{QStringEncoder::Utf8, QStringEncoder::Flag::Stateless};
    QByteArray utf8;

    /// Returns the text in UTF-8, valid until the next call. All texts share one buffer: most are
    /// short, and allocating an array for each took longer than writing it.
    std::string_view encoded(const QString &text) {
        if (const qsizetype space = encoder.requiredSpace(text.size()); utf8.size() < space)
            utf8.resize(space);
        const char *const end = encoder.appendToBuffer(utf8.data(), text);
        return {utf8.constData(), std::size_t(end - utf8.constData())};
    }
};

JSONWriter::JSONWriter() : m_output(std::make_unique<Output>()) {}

JSONWriter::~JSONWriter() = default;

void JSONWriter::beginObject() {
    m_output->writer.StartObject();
}

void JSONWriter::key(std::string_view name) {
    m_output->writer.plainKey(name);
}

void JSONWriter::key(const QString &name) {
    string(name);
}

void JSONWriter::endObject() {
    m_output->writer.EndObject();
}

void JSONWriter::beginArray() {
    m_output->writer.StartArray();
}

void JSONWriter::endArray() {
    m_output->writer.EndArray();
}

void JSONWriter::string(const QString &text) {
    const std::string_view utf8 = m_output->encoded(text);
    m_output->writer.String(utf8.data(), rapidjson::SizeType(utf8.size()));
}

void JSONWriter::integer(qint64 number) {
    m_output->writer.Int64(number);
}

void JSONWriter::unsignedInteger(quint64 number) {
    m_output->writer.Uint64(number);
}

void JSONWriter::number(double number) {
    if (std::isfinite(number))
        m_output->writer.Double(number);
    else
        m_output->writer.Null();
}

void JSONWriter::boolean(bool value) {
    m_output->writer.Bool(value);
}

QByteArray JSONWriter::text() const {
    return {m_output->buffer.GetString(), qsizetype(m_output->buffer.GetSize())};
}

} // namespace KestrioKit
