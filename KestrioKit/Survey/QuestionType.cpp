#include "KestrioKit/Survey/QuestionType.h"

#include "KestrioKit/Survey/RawText.h"

namespace KestrioKit {

using namespace Qt::StringLiterals;

bool JSONCoding<QuestionType>::decode(const QJsonValue &value, QuestionType &result,
                                      DecodingError &) {
    static constexpr std::array names{
        RawText{QuestionType::open, "open"_L1},
        RawText{QuestionType::likert, "likert"_L1},
        RawText{QuestionType::multipleChoice, "multiplechoice"_L1},
        RawText{QuestionType::multiSelect, "multipleselect"_L1},
        RawText{QuestionType::nps, "nps"_L1},
    };
    result = valueForRawText<QuestionType>(names, value);
    return true;
}

} // namespace KestrioKit
