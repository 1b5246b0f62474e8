#include "KestrioKit/Platform/JSONWriter.h"

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <cmath>

namespace KestrioKit {

struct JSONWriter::Output {
    rapidjson::StringBuffer buffer;
    rapidjson::Writer<rapidjson::StringBuffer> writer{buffer};
};

JSONWriter::JSONWriter() : m_output(std::make_unique<Output>()) {}

JSONWriter::~JSONWriter() = default;

void JSONWriter::beginObject() {
    m_output->writer.StartObject();
}

void JSONWriter::key(std::string_view name) {
    m_output->writer.Key(name.data(), rapidjson::SizeType(name.size()));
}

void JSONWriter::key(const QString &name) {
    const QByteArray utf8 = name.toUtf8();
    key(std::string_view(utf8.constData(), std::size_t(utf8.size())));
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
    const QByteArray utf8 = text.toUtf8();
    m_output->writer.String(utf8.constData(), rapidjson::SizeType(utf8.size()));
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
