#include "KestrioKit/Platform/Clock.h"
#include "KestrioKit/Protocol/KestrioServiceRequests.h"
#include "KestrioKit/Protocol/ResponseConfig.h"
#include "tests/fuzz/Fuzzing.h"

using namespace KestrioKit;
using namespace Qt::StringLiterals;

namespace {

void requireRequests(const QString &environment, const QByteArray &host) {
    qunsetenv("KESTRIO_ENVIRONMENT");
    qputenv("KESTRIO_HOSTNAME", host);
    KestrioServiceRequests requests(Clock::system());
    requests.setEnvironment(environment);
    requests.setVisitorIdentifier(1);
    const std::optional<URLRequest> config = requests.newConfig();
    const QString segments = u'/' + environment + u'/';
    const bool hasSteps = segments.contains(u"/./"_s) || segments.contains(u"/../"_s);
    if (!config) {
        requests.setEnvironment(u"environment"_s);
        require(hasSteps || !requests.newConfig(), "nothing but steps and hosts are refused");
        return;
    }
    require(!hasSteps, "steps through the path are refused");
    // Decoded by QUrl itself, noncharacters would stay escaped.
    require(QUrl::fromPercentEncoding(config->url.path(QUrl::FullyEncoded).toLatin1()) ==
                u"/1/environments/"_s + environment + u"/config"_s,
            "the environment id stands in the path as it is");
    for (const auto &request : {config, requests.newVisitors(environment),
                                requests.newFetchSurvey(1), requests.newRemoveAttributes({})}) {
        require(request.has_value(), "an environment has all requests or none");
        requireWellFormed(*request);
        require(request->url.authority() == config->url.authority(), "there is one host");
    }
}

void requireSound(const ResponseConfig &config) {
    const QColor color = config.themeColor();
    require(color.isValid() && color.alpha() == 255, "the theme colour is opaque");
    require(colorFromHex(color.name()) == color, "a colour is read as it is named");
    const std::optional<DisabledError> disabled = config.checkDisabled();
    require(disabled.has_value() == config.disabled.has_value(), "a reason disables");
    if (disabled)
        require(isDisabledError(disabled->toError()) && !printedForm(*disabled).contains(u'\n'),
                "the reason is told in one line");
}

} // namespace

/// The environment id, a line feed, the host's name, a line feed, and what the service answers.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const QByteArray input = inputText(data, size);
    const qsizetype environmentEnd = input.indexOf('\n');
    const qsizetype hostEnd = input.indexOf('\n', environmentEnd + 1);
    if (environmentEnd < 0 || hostEnd < 0)
        return 0;
    requireRequests(QString::fromUtf8(input.first(environmentEnd)),
                    input.sliced(environmentEnd + 1, hostEnd - environmentEnd - 1));
    const QByteArray answer = input.sliced(hostEnd + 1);
    if (const auto config = decodedRecord<ResponseConfig>(answer)) {
        requireSurvival(answer, *config);
        requireSound(*config);
    }
    return 0;
}
