#include "KestrioKit/Core/Facade/LocalData.h"
#include "KestrioKit/Core/Protocol/ResponseVisitors.h"
#include "tests/fuzz/Fuzzing.h"

using namespace KestrioKit;

/// What the identity file holds, or what the service answers about a visitor.
void tryInput(const QByteArray &text) {
    if (const auto identity = decodedRecord<LocalData>(text))
        requireSurvival(text, *identity);
    if (const auto visitor = decodedRecord<ResponseVisitors>(text))
        requireSurvival(text, *visitor);
}
