#include "KestrioKit/Core/Facade/Selectors.h"

#include <algorithm>
#include <array>

namespace KestrioKit {

using namespace Qt::StringLiterals;

namespace {

using Arguments = QVariantList;

struct Selector {
    QLatin1StringView text;
    /// The types that the arguments must convert to.
    QList<QMetaType> (*argumentTypes)();
    QVariant (*call)(Kestrio &kestrio, const Arguments &arguments);
};

template <typename... Types>
QList<QMetaType> types() {
    return {QMetaType::fromType<Types>()...};
}

// Operations that take only texts and return nothing.
template <void (Kestrio::*operation)(const QString &)>
QVariant callWithText(Kestrio &kestrio, const Arguments &arguments) {
    (kestrio.*operation)(arguments[0].toString());
    return {};
}

QVariant visitorIdentifier(Kestrio &kestrio, const Arguments &) {
    const std::optional<qint64> identifier = kestrio.visitorIdentifier();
    return identifier ? QVariant(*identifier) : QVariant();
}

QVariant setVisitorAttributes(Kestrio &kestrio, const Arguments &arguments) {
    QMap<QString, QString> attributes;
    const QVariantMap map = arguments[0].toMap();
    for (auto entry = map.begin(); entry != map.end(); ++entry)
        attributes.insert(entry.key(), entry.value().toString());
    kestrio.setVisitorAttributes(attributes);
    return {};
}

const std::array selectors{
    Selector{"shared"_L1, types<>,
             [](Kestrio &kestrio, const Arguments &) {
                 return QVariant::fromValue<QObject *>(&kestrio);
             }},
    Selector{"visitorIdentifier"_L1, types<>, visitorIdentifier},
    Selector{"disableNetworkAccess"_L1, types<>,
             [](Kestrio &kestrio, const Arguments &) {
                 return QVariant(kestrio.disableNetworkAccess());
             }},
    Selector{"setDisableNetworkAccess:"_L1, types<bool>,
             [](Kestrio &kestrio, const Arguments &arguments) {
                 kestrio.setDisableNetworkAccess(arguments[0].toBool());
                 return QVariant();
             }},
    Selector{"configureWithEnvironment:"_L1, types<QString>, callWithText<&Kestrio::configure>},
    Selector{"setLocale:"_L1, types<QString>, callWithText<&Kestrio::setLocale>},
    Selector{"setUserIdentifier:"_L1, types<QString>, callWithText<&Kestrio::setUserIdentifier>},
    Selector{"setEmailAddress:"_L1, types<QString>, callWithText<&Kestrio::setEmailAddress>},
    Selector{"setVisitorAttributeWithKey:value:"_L1, types<QString, QString>,
             [](Kestrio &kestrio, const Arguments &arguments) {
                 kestrio.setVisitorAttribute(arguments[0].toString(), arguments[1].toString());
                 return QVariant();
             }},
    Selector{"setVisitorAttributes:"_L1, types<QVariantMap>, setVisitorAttributes},
    Selector{"removeVisitorAttributes:"_L1, types<QStringList>,
             [](Kestrio &kestrio, const Arguments &arguments) {
                 kestrio.removeVisitorAttributes(arguments[0].toStringList());
                 return QVariant();
             }},
    Selector{"trackWithEventName:handler:"_L1, types<QString, Kestrio::TrackHandler>,
             [](Kestrio &kestrio, const Arguments &arguments) {
                 kestrio.track(arguments[0].toString(),
                               arguments[1].value<Kestrio::TrackHandler>());
                 return QVariant();
             }},
    Selector{"presentSurveyFrom:"_L1, types<QObject *>,
             [](Kestrio &kestrio, const Arguments &arguments) {
                 kestrio.presentSurvey(arguments[0].value<QObject *>());
                 return QVariant();
             }},
    Selector{"presentSurveyWithId:from:fetchCompletion:"_L1,
             types<qint64, QObject *, Kestrio::FetchCompletion>,
             [](Kestrio &kestrio, const Arguments &arguments) {
                 kestrio.presentSurvey(arguments[0].toLongLong(), arguments[1].value<QObject *>(),
                                       arguments[2].value<Kestrio::FetchCompletion>());
                 return QVariant();
             }},
    Selector{"presentDebugSurveyFrom:"_L1, types<QObject *>,
             [](Kestrio &kestrio, const Arguments &arguments) {
                 kestrio.presentDebugSurvey(arguments[0].value<QObject *>());
                 return QVariant();
             }},
    Selector{"logout"_L1, types<>,
             [](Kestrio &kestrio, const Arguments &) {
                 kestrio.logout();
                 return QVariant();
             }},
};

bool isText(const QVariant &value) {
    return value.canConvert<QString>();
}

/// Returns whether `argument` really represents a value of `type`: "abc" is not a number, 1.5 is
/// not an integer, and "maybe" is not a Boolean, although Qt converts them.
bool saysValueOf(const QVariant &argument, QMetaType type) {
    QVariant value = argument;
    if (!value.convert(type))
        return false;
    if (type == QMetaType::fromType<qint64>())
        return value.toDouble() == argument.toDouble();
    const QString text = argument.toString();
    return type != QMetaType::fromType<bool>() || text == "true"_L1 || text == "false"_L1 ||
           text == "1"_L1 || text == "0"_L1;
}

// Only handlers may be omitted. A null widget is passed on like any other. Lists and maps must
// contain texts.
bool fits(const QVariant &argument, QMetaType type) {
    if (type == QMetaType::fromType<QObject *>())
        return argument.canConvert<QObject *>();
    if (argument.isNull())
        return type == QMetaType::fromType<Kestrio::TrackHandler>() ||
               type == QMetaType::fromType<Kestrio::FetchCompletion>();
    if (argument.metaType() != type && !saysValueOf(argument, type))
        return false;
    if (type == QMetaType::fromType<QVariantMap>())
        return std::ranges::all_of(argument.toMap(), isText);
    if (type == QMetaType::fromType<QStringList>())
        return std::ranges::all_of(argument.toList(), isText);
    return true;
}

} // namespace

std::optional<QVariant> performSelector(Kestrio &kestrio, const QString &selector,
                                        const QVariantList &arguments) {
    const auto *const found =
        std::find_if(selectors.begin(), selectors.end(),
                     [&selector](const Selector &known) { return known.text == selector; });
    if (found == selectors.end())
        return std::nullopt;
    const QList<QMetaType> wanted = found->argumentTypes();
    if (!std::equal(arguments.begin(), arguments.end(), wanted.begin(), wanted.end(), fits))
        return std::nullopt;
    return found->call(kestrio, arguments);
}

} // namespace KestrioKit
