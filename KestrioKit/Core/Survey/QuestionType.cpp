#include "KestrioKit/Core/Survey/QuestionType.h"

#include "KestrioKit/Core/Survey/RawText.h"

namespace KestrioKit {

using namespace Qt::StringLiterals;

bool JSONCoding<QuestionType>::decode(const QJsonValue &value, QuestionType &result,
                                      DecodingError &) {
    static constexpr std::array names{
        std::pair{QuestionType::open, "open"_L1},
        std::pair{QuestionType::likert, "likert"_L1},
        std::pair{QuestionType::multipleChoice, "multiplechoice"_L1},
        std::pair{QuestionType::multiSelect, "multipleselect"_L1},
        std::pair{QuestionType::nps, "nps"_L1},
    };
    result = valueForRawText<QuestionType>(names, value);
    return true;
}

} // namespace KestrioKit
