#include "KestrioKit/Core/Protocol/KestrioServiceRequests.h"

#include "KestrioKit/Core/Platform/Logging.h"

#include <QRegularExpression>
#include <QUrlQuery>

#include <algorithm>
#include <atomic>
#include <limits>

namespace KestrioKit {

using namespace Qt::StringLiterals;

namespace {

constexpr auto localHost = "localhost"_L1;
constexpr auto localScheme = "http"_L1;
constexpr int localPort = 8080;
constexpr auto scheme = "https"_L1;
constexpr auto bulkVersion = "2"_L1;
constexpr int highestPort = 65535;
constexpr auto hostVariable = "KESTRIO_HOSTNAME";
constexpr double millisecondsPerSecond = 1000;

// The characters that a path may contain besides letters, digits and "-._~" (RFC 3986, 3.3). QUrl's
// own escaping passes square brackets and lone surrogates, which strict servers refuse.
constexpr auto pathCharacters = "/!$&'()*+,;=:@";

QString escapedPath(const QString &path) {
    return QString::fromLatin1(QUrl::toPercentEncoding(path, pathCharacters));
}

// When sending, Qt resolves "." and ".." as steps through the path, even if they are escaped. The
// request would reach another resource than intended.
bool leadsElsewhere(const QString &path) {
    const QList<QStringView> segments = QStringView(path).split(u'/');
    return segments.contains(u"."_s) || segments.contains(u".."_s);
}

// QUrl accepts any text as the zone of an IPv6 address, and then writes a URL that cannot be
// parsed.
bool isReadable(const QUrl &url) {
    return url.isValid() && QUrl::fromEncoded(url.toEncoded(), QUrl::StrictMode) == url;
}

/// A host, and where it was named.
struct NamedHost {
    QString text;
    QString source;
};

NamedHost namedHost(const QString &given) {
    constexpr auto environmentVariable = "KESTRIO_ENVIRONMENT";
    if (qEnvironmentVariableIsSet(environmentVariable)) {
        const QString environment = qEnvironmentVariable(environmentVariable);
        if (environment.contains("local"_L1))
            return {localHost, {}};
        return {environment.contains("stag"_L1) ? QLatin1StringView(KESTRIO_STAGING_HOST)
                                                : QLatin1StringView(KESTRIO_PRODUCTION_HOST),
                {}};
    }
    if (qEnvironmentVariableIsSet(hostVariable))
        return {qEnvironmentVariable(hostVariable), QLatin1StringView(hostVariable)};
    if (!given.isEmpty())
        return {given, u"setServiceHost"_s};
    return {QLatin1StringView(KESTRIO_PRODUCTION_HOST), {}};
}

// Returns the milliseconds since 1970, but at least the last number plus one. Reports of the same
// millisecond, or made after the clock was set back, thus get different numbers.
qint64 nextReportNumber(const Clock &clock) {
    static constinit std::atomic<qint64> last = std::numeric_limits<qint64>::min();
    const auto now = qint64(clock.secondsSince1970() * millisecondsPerSecond);
    qint64 before = last;
    qint64 number = 0;
    do {
        number = std::max(now, before + 1);
    } while (!last.compare_exchange_weak(before, number));
    return number;
}

/// A host name, an IPv4 address or an IPv6 address. An IPv6 address is in brackets if a port
/// follows.
struct HostAndPort {
    QString host;
    std::optional<int> port;
};

/// Splits "host", "host:port" or "[address]:port". Absent if the text after the host is not a port.
std::optional<HostAndPort> splitHost(const QString &text) {
    const qsizetype colon = text.lastIndexOf(u':');
    const bool isBareAddress = !text.startsWith(u'[') && text.count(u':') > 1;
    if (colon < 0 || isBareAddress || text.endsWith(u']'))
        return HostAndPort{text, {}};
    const QString digits = text.sliced(colon + 1);
    static const QRegularExpression port(u"^[0-9]{1,5}\\z"_s);
    if (!port.match(digits).hasMatch() || digits.toInt() < 1 || digits.toInt() > highestPort)
        return std::nullopt;
    return HostAndPort{text.first(colon), digits.toInt()};
}

/// Returns the part of every URL before the path; absent if `text` is not a valid host.
std::optional<QUrl> baseUrl(const QString &text) {
    const std::optional<HostAndPort> parts = splitHost(text);
    if (!parts)
        return std::nullopt;
    const bool local = text.contains(localHost);
    QUrl url;
    url.setScheme(local ? localScheme : scheme);
    url.setHost(parts->host);
    // An http URL must name a host (RFC 9110, 4.2). QUrl clears a host that it considers invalid.
    if (url.host().isEmpty())
        return std::nullopt;
    if (parts->port)
        url.setPort(*parts->port);
    else if (local)
        url.setPort(localPort);
    return isReadable(url) ? std::optional(url) : std::nullopt;
}

std::optional<URLRequest> request(const char *method, const std::optional<QUrl> &url) {
    if (!url)
        return std::nullopt;
    return URLRequest{.method = method, .url = *url, .headers = {}, .body = {}};
}

template <typename Body>
std::optional<URLRequest> request(const char *method, const std::optional<QUrl> &url,
                                  const Body &body) {
    std::optional<URLRequest> result = request(method, url);
    if (result)
        result->body = encodeJSON(body);
    return result;
}

} // namespace

QString KestrioServiceRequests::host() const {
    findHost();
    return m_host;
}

bool KestrioServiceRequests::setHost(const QString &host) {
    if (m_isHostTaken)
        return false;
    m_givenHost.setValue(host);
    return true;
}

std::unique_ptr<const KestrioServiceRequests>
KestrioServiceRequests::forVisitor(std::optional<qint64> visitorIdentifier) const {
    auto requests = std::make_unique<KestrioServiceRequests>(m_clock);
    requests->setEnvironment(environment());
    requests->setVisitorIdentifier(visitorIdentifier);
    findHost();
    std::call_once(requests->m_hostOnce, [&] {
        requests->m_host = m_host;
        requests->m_baseUrl = m_baseUrl;
    });
    return requests;
}

void KestrioServiceRequests::findHost() const {
    std::call_once(m_hostOnce, [this] {
        m_isHostTaken = true;
        const auto [text, source] = namedHost(m_givenHost.value());
        m_baseUrl = baseUrl(text);
        m_host = m_baseUrl ? m_baseUrl->host() : text;
        if (!m_baseUrl)
            logLine(
                LogLevel::error,
                u"[KestrioService] Nothing can be sent: %1 is not a host, with or without a port: %2"_s
                    .arg(source, printedForm(text)));
    });
}

std::optional<QUrl> KestrioServiceRequests::url(const QString &path) const {
    findHost();
    if (!m_baseUrl || leadsElsewhere(path))
        return std::nullopt;
    QUrl url = *m_baseUrl;
    url.setPath(escapedPath(path), QUrl::StrictMode);
    return url.isValid() ? std::optional(url) : std::nullopt;
}

std::optional<QUrl> KestrioServiceRequests::versionedUrl(const QString &relativePath) const {
    return url(u'/' + version + u'/' + relativePath);
}

std::optional<QUrl> KestrioServiceRequests::environmentUrl(const QString &subPath) const {
    return versionedUrl(u"environments/"_s + environment() + u'/' + subPath);
}

std::optional<QUrl> KestrioServiceRequests::visitorUrl(const QString &subPath) const {
    const std::optional<qint64> visitor = visitorIdentifier();
    if (!visitor)
        return std::nullopt;
    return versionedUrl(u"visitors/"_s + QString::number(*visitor) + u'/' + subPath);
}

std::optional<QUrl> KestrioServiceRequests::bulkUrl(const QString &subPath) const {
    const std::optional<qint64> visitor = visitorIdentifier();
    if (!visitor)
        return std::nullopt;
    return url(u'/' + bulkVersion + u"/environments/"_s + environment() + u"/visitors/"_s +
               QString::number(*visitor) + u'/' + subPath);
}

std::optional<URLRequest> KestrioServiceRequests::newConfig() const {
    return request("GET", environmentUrl(u"config"_s));
}

std::optional<URLRequest>
KestrioServiceRequests::newVisitors(const std::optional<QString> &userIdentifier) const {
    return request("POST", environmentUrl(u"visitors"_s), Request::Visitors{userIdentifier});
}

std::optional<URLRequest>
KestrioServiceRequests::newTrackEvent(const Request::TrackEvent &event) const {
    return request("POST", visitorUrl(u"events"_s), event);
}

std::optional<URLRequest>
KestrioServiceRequests::newBatchTrackEvents(const QList<Request::TrackEvent> &events) const {
    return request("POST", visitorUrl(u"events/batch"_s),
                   Request::makeBatchTrackEvent(events, m_clock));
}

std::optional<URLRequest>
KestrioServiceRequests::newSetUserIdentifier(const QString &userIdentifier) const {
    const std::optional<qint64> visitor = visitorIdentifier();
    if (!visitor)
        return std::nullopt;
    return request("PUT", environmentUrl(u"visitors/"_s + QString::number(*visitor)),
                   Request::UpdateUserIdentifier{userIdentifier});
}

std::optional<URLRequest> KestrioServiceRequests::newFetchSurvey(qint64 surveyId) const {
    std::optional<QUrl> url = environmentUrl(u"questions"_s);
    if (url) {
        // The service identifies the visitor by the token and ignores "vid".
        url->setQuery(QUrlQuery{{u"surveyid"_s, QString::number(surveyId)}, {u"vid"_s, u"0"_s}});
    }
    return request("GET", url);
}

std::optional<URLRequest>
KestrioServiceRequests::newSetAttribute(const Request::UpdateAttribute &attribute) const {
    return request("PUT", visitorUrl(u"attributes/"_s + attribute.key),
                   Request::UpdateAttribute::RequestBody{attribute.value});
}

std::optional<URLRequest>
KestrioServiceRequests::newSetAttributes(const Request::UpdateAttributes &attributes) const {
    return request("PUT", bulkUrl(u"attributes"_s), attributes.attributes);
}

std::optional<URLRequest>
KestrioServiceRequests::newRemoveAttributes(const Request::RemoveAttributes &attributes) const {
    return request("DELETE", bulkUrl(u"attributes"_s), attributes);
}

std::optional<URLRequest>
KestrioServiceRequests::newSubmitResponse(const Request::SurveyResponseBody &response) const {
    return request("POST", bulkUrl(u"responses/submit"_s), response);
}

std::optional<URLRequest>
KestrioServiceRequests::newSurveyHistory(const Request::SurveyEvent &event) const {
    return request("POST",
                   versionedUrl(u"visitors/%1/surveys/%2/history"_s.arg(
                       QString::number(event.visitorId), QString::number(event.surveyId))),
                   event);
}

std::optional<URLRequest>
KestrioServiceRequests::newRecordError(const Request::RecordError &error) const {
    std::optional<URLRequest> result = request("POST", versionedUrl(u"errors"_s), error);
    if (result) {
        const QByteArray number = QByteArray::number(nextReportNumber(m_clock));
        result->headers.append({"x-ks-error", "kestrio-" + number + "-error"});
    }
    return result;
}

} // namespace KestrioKit
