#include "KestrioKit/Core/Survey/SurveyLogicComparator.h"

#include "KestrioKit/Core/Survey/RawText.h"

#include <functional>

namespace KestrioKit {

using namespace Qt::StringLiterals;

namespace {

qint64 canonical(qint64 number) {
    return number;
}

bool canonical(bool value) {
    return value;
}

QString canonical(const QString &text) {
    return text.normalized(QString::NormalizationForm_C);
}

template <typename Value>
QMap<QString, Value> canonical(const QMap<QString, Value> &map) {
    QMap<QString, Value> result;
    for (auto entry = map.begin(); entry != map.end(); ++entry)
        result.insert(canonical(entry.key()), canonical(entry.value()));
    return result;
}

struct SamePayload {
    template <typename Left, typename Right>
    bool operator()(const Left &left, const Right &right) const {
        if constexpr (std::is_same_v<Left, Right>)
            return canonical(left) == canonical(right);
        else
            return false;
    }
};

bool areEqual(const CodableDynamicType &response, const CodableDynamicType &value) {
    return std::visit(SamePayload{}, response.payload, value.payload);
}

template <typename Order>
bool areOrdered(const CodableDynamicType &response, const CodableDynamicType &value, Order order) {
    const qint64 *const left = response.asInt();
    const qint64 *const right = value.asInt();
    return left && right && order(*left, *right);
}

} // namespace

bool SurveyLogicComparator::compare(const CodableDynamicType &response,
                                    const CodableDynamicType &value) const {
    switch (kind) {
    case eq:
        return areEqual(response, value);
    case neq:
        return !areEqual(response, value);
    case gt:
        return areOrdered(response, value, std::greater{});
    case gte:
        return areOrdered(response, value, std::greater_equal{});
    case lt:
        return areOrdered(response, value, std::less{});
    case lte:
        return areOrdered(response, value, std::less_equal{});
    case answered:
        return true;
    case other:
        return false;
    }
    return false;
}

bool JSONCoding<SurveyLogicComparator>::decode(const QJsonValue &value,
                                               SurveyLogicComparator &result, DecodingError &) {
    using Comparator = SurveyLogicComparator;
    static constexpr std::array names{
        std::pair{Comparator::eq, "eq"_L1},
        std::pair{Comparator::neq, "neq"_L1},
        std::pair{Comparator::gt, "gt"_L1},
        std::pair{Comparator::gte, "gte"_L1},
        std::pair{Comparator::lt, "lt"_L1},
        std::pair{Comparator::lte, "lte"_L1},
        std::pair{Comparator::answered, "answered"_L1},
    };
    result = valueForRawText<Comparator>(names, value);
    return true;
}

} // namespace KestrioKit
