#include "KestrioKit/Core/Protocol/Metadata.h"

namespace KestrioKit {

namespace {

using Request::Metadata;

// RFC 8259 does not define what a duplicate key means, so no key is written twice.
Metadata withoutOverriddenFields(Metadata metadata) {
    const auto clearIfOverridden = [&metadata](const auto &row) {
        if (metadata.extra->contains(QString::fromLatin1(row.key)))
            (metadata.*row.field).reset();
    };
    std::apply([&](const auto &...row) { (clearIfOverridden(row), ...); }, keyTable<Metadata>);
    return metadata;
}

// A field owns its key only if it was read: an entry that has the key of a field but a value of
// another type must survive being stored.
bool isField(const Metadata &metadata, const QString &key) {
    const auto owns = [&](const auto &row) {
        return (metadata.*row.field) && key == QLatin1StringView(row.key);
    };
    return std::apply([&](const auto &...row) { return (owns(row) || ...); }, keyTable<Metadata>);
}

Metadata::Extra decodeExtra(const QJsonObject &object, const Metadata &fields) {
    Metadata::Extra extra;
    for (auto entry = object.begin(); entry != object.end(); ++entry) {
        CodableDynamicType value;
        DecodingError ignored;
        if (!isField(fields, entry.key()) &&
            JSONCoding<CodableDynamicType>::decode(entry.value(), value, ignored))
            extra.insert(entry.key(), value);
    }
    return extra;
}

} // namespace

Request::Metadata Request::makeMetadata(const DeviceFacts &device, std::optional<QString> pagename,
                                        std::optional<QString> locale,
                                        std::optional<Metadata::Extra> extra) {
    Metadata metadata;
    if (device.screenSize) {
        metadata.screenWidth = device.screenSize->width();
        metadata.screenHeight = device.screenSize->height();
    }
    metadata.pagename = std::move(pagename);
    metadata.language = std::move(locale).value_or(device.languageCode);
    metadata.extra = std::move(extra);
    return metadata;
}

void JSONCoding<Metadata>::encode(JSONWriter &writer, const Metadata &metadata) {
    using Fields = KeyTableCoding<Metadata>;
    writer.beginObject();
    if (!metadata.extra) {
        Fields::encodeFields(writer, metadata);
    } else {
        Fields::encodeFields(writer, withoutOverriddenFields(metadata));
        for (auto entry = metadata.extra->begin(); entry != metadata.extra->end(); ++entry) {
            writer.key(entry.key());
            JSONCoding<CodableDynamicType>::encode(writer, entry.value());
        }
    }
    writer.endObject();
}

bool JSONCoding<Metadata>::decode(const QJsonValue &value, Metadata &result, DecodingError &error) {
    if (!KeyTableCoding<Metadata>::decode(value, result, error))
        return false;
    Metadata::Extra extra = decodeExtra(value.toObject(), result);
    if (!extra.isEmpty())
        result.extra = std::move(extra);
    return true;
}

} // namespace KestrioKit
