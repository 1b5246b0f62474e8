#include "KestrioKit/Facade/LocalData.h"
#include "KestrioKit/Protocol/ResponseVisitors.h"
#include "tests/fuzz/Fuzzing.h"

using namespace KestrioKit;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const QByteArray text = inputText(data, size);
    if (const auto visitor = decodedRecord<ResponseVisitors>(text)) {
        requireOrigin(text, encodeJSON(*visitor));
        requireSurvival(text, *visitor);
        requireOneLineHeaders(visitor->token);
        requireSurvival(
            text, LocalData{visitor->token, visitor->visitorIdentifier, visitor->userIdentifier});
    }
    return 0;
}
