#include "KestrioKit/Facade/LocalData.h"
#include "KestrioKit/Protocol/ResponseVisitors.h"
#include "tests/fuzz/Fuzzing.h"

using namespace KestrioKit;

/// What the identity file holds, or what the service answers about a visitor.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const QByteArray text = inputText(data, size);
    if (const auto identity = decodedRecord<LocalData>(text))
        requireSurvival(text, *identity);
    if (const auto visitor = decodedRecord<ResponseVisitors>(text))
        requireSurvival(text, *visitor);
    return 0;
}
