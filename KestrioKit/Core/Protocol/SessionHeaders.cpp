#include "KestrioKit/Core/Protocol/SessionHeaders.h"

#include <QLocale>

namespace KestrioKit {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype acceptedLanguages = 5;
constexpr double weightStart = 1.1;
constexpr double weightStep = 0.1;

QByteArray headerValue(const QString &text) {
    QString printable = text;
    printable.removeIf(
        [](QChar character) { return character.category() == QChar::Other_Control; });
    return printable.toUtf8();
}

} // namespace

QString acceptLanguage(const QStringList &preferredLanguages) {
    QStringList items;
    // The service expects exactly the digits that repeated subtraction yields: the fourth weight is
    // 0.7000000000000001.
    double weight = weightStart;
    for (const QString &language : preferredLanguages.mid(0, acceptedLanguages)) {
        weight -= weightStep;
        const QString suffix =
            u";q="_s + QString::number(weight, 'g', QLocale::FloatingPointShortest);
        items.append(weight < 1.0 ? language + suffix : language);
    }
    return items.join(u", "_s);
}

QList<HTTPHeader> sessionHeaders(const UserAgent &userAgent, const std::optional<QString> &locale,
                                 const QStringList &preferredLanguages,
                                 const std::optional<QString> &token) {
    QList<HTTPHeader> headers{
        {"User-Agent", headerValue(userAgent.uaHeaderValue())},
        {"Content-Type", "application/json"},
        {"kestrio-platform", "ios"},
        {"Accept-Language", headerValue(locale ? *locale : acceptLanguage(preferredLanguages))},
        {"x-ks-sdk-version", headerValue(userAgent.sdkVersion)},
        {"x-ks-app-version", headerValue(userAgent.appVersion)},
        {"x-ks-device-type", headerValue(userAgent.deviceType)},
        {"x-ks-os-version", headerValue(userAgent.osVersion)},
    };
    if (token)
        headers.append({"Authorization", "Bearer " + headerValue(*token)});
    return headers;
}

} // namespace KestrioKit
