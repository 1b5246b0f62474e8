#include "KestrioKit/Core/Platform/Threads/Clock.h"
#include "KestrioKit/Core/Protocol/KestrioServiceRequests.h"
#include "KestrioKit/Core/Protocol/ResponseConfig.h"
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

} // namespace

/// The environment id, a line feed, the host's name, a line feed, and what the service answers.
void tryInput(const QByteArray &input) {
    const QByteArrayList lines = input.split('\n');
    if (lines.size() < 3)
        return;
    requireRequests(QString::fromUtf8(lines[0]), lines[1]);
    const QByteArray answer = lines.sliced(2).join('\n');
    if (const auto config = decodedRecord<ResponseConfig>(answer)) {
        requireSurvival(answer, *config);
        const auto color = config->themeColor();
        require(!color || (color->isValid() && color->alpha() == 255),
                "the theme colour is opaque");
    }
}
