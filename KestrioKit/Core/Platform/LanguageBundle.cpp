#include "KestrioKit/Core/Platform/LanguageBundle.h"

#include "KestrioKit/Core/Platform/DeviceFacts.h"

#include <QDir>
#include <QTranslator>

// A static library needs this call to link the texts into the program. Qt's macro must be used
// outside namespaces.
static void registerTables() {
    Q_INIT_RESOURCE(KestrioKitLocalizable);
}

namespace KestrioKit {

using namespace Qt::StringLiterals;

namespace {

constexpr auto tablesFolder = ":/KestrioKit"_L1;
constexpr auto folderSuffix = ".lproj"_L1;
constexpr auto tableFile = "Localizable.qm"_L1;
constexpr const char *tableContext = "Localizable";
constexpr auto lastResort = "en"_L1;
/// The number of subtags of a locale that determine its language, as in "zh-Hant-TW", and their
/// maximum length together (RFC 5646). The service may send any number.
constexpr qsizetype significantParts = 3;
constexpr qsizetype significantLength = significantParts * 9 - 1;

struct OtherName {
    QLatin1String name;
    QLatin1String language;
};

constexpr OtherName otherNames[] = {
    {"zh"_L1, "zh-Hans"_L1},    {"zh-TW"_L1, "zh-Hant"_L1}, {"zh-HK"_L1, "zh-Hant"_L1},
    {"zh-MO"_L1, "zh-Hant"_L1}, {"no"_L1, "nb"_L1},         {"nn"_L1, "nb"_L1},
    {"iw"_L1, "he"_L1},         {"in"_L1, "id"_L1},
};

QStringList listLanguages() {
    registerTables();
    QStringList names = QDir(tablesFolder).entryList({u'*' + folderSuffix}, QDir::Dirs, QDir::Name);
    for (QString &name : names)
        name.chop(folderSuffix.size());
    return names;
}

QString languageNamed(const QString &name) {
    for (const QString &language : AnyLanguageBundle::languages()) {
        if (language.compare(name, Qt::CaseInsensitive) == 0)
            return language;
    }
    for (const OtherName &other : otherNames) {
        if (name.compare(other.name, Qt::CaseInsensitive) == 0)
            return other.language;
    }
    return {};
}

/// Returns the language with texts that matches the most of the locale's significant subtags. Empty
/// if there is none.
QString languageFor(const QString &name) {
    QString locale = name.left(significantLength);
    locale = locale.replace(u'_', u'-').section(u'-', 0, significantParts - 1);
    for (; !locale.isEmpty(); locale.truncate(locale.lastIndexOf(u'-'))) {
        if (QString language = languageNamed(locale); !language.isEmpty())
            return language;
    }
    return {};
}

std::shared_ptr<const QTranslator> firstTable(const QStringList &locales) {
    const auto table = std::make_shared<QTranslator>();
    for (const QString &locale : locales) {
        const QString language = languageFor(locale);
        if (!language.isEmpty() &&
            table->load(tablesFolder + u'/' + language + folderSuffix + u'/' + tableFile))
            return table;
    }
    return nullptr;
}

std::shared_ptr<const QTranslator> tableFor(const QString &language) {
    return firstTable(QStringList(language) + preferredLanguages() + QStringList(lastResort));
}

} // namespace

AnyLanguageBundle::AnyLanguageBundle(const QString &language) {
    setLanguage(language);
}

AnyLanguageBundle &AnyLanguageBundle::framework() {
    static auto *const bundle = new AnyLanguageBundle;
    return *bundle;
}

const QStringList &AnyLanguageBundle::languages() {
    static const auto *const names = new QStringList(listLanguages());
    return *names;
}

void AnyLanguageBundle::setLanguage(const QString &language) {
    m_table.setValue(tableFor(language));
}

QString AnyLanguageBundle::localizedString(const QString &key, const QString &value) const {
    // A translator that is not installed may be read and released on any thread.
    const std::shared_ptr<const QTranslator> table = m_table.value();
    QString text = table ? table->translate(tableContext, key.toUtf8().constData()) : QString();
    if (!text.isEmpty())
        return text;
    return value.isEmpty() ? key : value;
}

} // namespace KestrioKit
