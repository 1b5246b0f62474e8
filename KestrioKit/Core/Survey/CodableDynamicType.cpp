#include "KestrioKit/Core/Survey/CodableDynamicType.h"

namespace KestrioKit {

using namespace Qt::StringLiterals;

namespace {

template <typename Form>
bool decodeForm(const QJsonValue &json, CodableDynamicType &result) {
    Form form{};
    DecodingError ignored;
    if (!JSONCoding<Form>::decode(json, form, ignored))
        return false;
    result.payload = std::move(form);
    return true;
}

} // namespace

void JSONCoding<CodableDynamicType>::encode(JSONWriter &writer, const CodableDynamicType &value) {
    std::visit(
        [&writer]<typename Form>(const Form &form) { JSONCoding<Form>::encode(writer, form); },
        value.payload);
}

bool JSONCoding<CodableDynamicType>::decode(const QJsonValue &value, CodableDynamicType &result,
                                            DecodingError &error) {
    if (decodeForm<qint64>(value, result) || decodeForm<QString>(value, result) ||
        decodeForm<CodableDynamicType::DictBoolValue>(value, result) ||
        decodeForm<CodableDynamicType::DictStringValue>(value, result))
        return true;
    return reportTypeMismatch(error, u"Type is not supported"_s);
}

} // namespace KestrioKit
