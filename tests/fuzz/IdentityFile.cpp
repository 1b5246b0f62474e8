#include "KestrioKit/Facade/LocalData.h"
#include "KestrioKit/Protocol/KestrioServiceRequests.h"
#include "tests/fuzz/Fuzzing.h"

using namespace KestrioKit;
using namespace Qt::StringLiterals;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const QByteArray text = inputText(data, size);
    const auto identity = decodedRecord<LocalData>(text);
    if (!identity)
        return 0;
    requireOrigin(text, encodeJSON(*identity));
    requireSurvival(text, *identity);
    requireOneLineHeaders(identity->token);
    KestrioServiceRequests requests(Clock::system());
    requests.setEnvironment(u"environment"_s);
    requests.setVisitorIdentifier(identity->visitorIdentifier);
    const auto request = requests.newSetUserIdentifier(identity->userIdentifier.value_or(u""_s));
    require(request.has_value() == identity->visitorIdentifier.has_value(), "a visitor is named");
    if (request)
        requireWellFormed(*request);
    return 0;
}
