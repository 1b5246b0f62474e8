#include "KestrioKit/Facade/LocalData.h"
#include "tests/fuzz/Fuzzing.h"

using namespace KestrioKit;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const QByteArray text = inputText(data, size);
    if (const auto identity = decodedRecord<LocalData>(text)) {
        requireSurvival(text, *identity);
        requireOneLineHeaders(identity->token);
    }
    return 0;
}
