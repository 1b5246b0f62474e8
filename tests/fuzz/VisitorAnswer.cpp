#include "KestrioKit/Protocol/ResponseVisitors.h"
#include "tests/fuzz/Fuzzing.h"

using namespace KestrioKit;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const QByteArray text = inputText(data, size);
    if (const auto visitor = decodedRecord<ResponseVisitors>(text)) {
        requireSurvival(text, *visitor);
        requireOneLineHeaders(visitor->token);
    }
    return 0;
}
