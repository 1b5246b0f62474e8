#include "KestrioKit/Platform/LanguageBundle.h"

#include "KestrioKit/Platform/DeviceFacts.h"

#include <QDir>
#include <QTranslator>

// Within a static library nothing else brings the tables into the program. Qt's macro wants to be
// used outside of any namespace.
static void registerTables() {
    Q_INIT_RESOURCE(KestrioKitLocalizable);
}

namespace KestrioKit {

using namespace Qt::StringLiterals;

namespace {

constexpr auto tablesFolder = ":/KestrioKit"_L1;
constexpr auto folderSuffix = ".lproj"_L1;
constexpr auto tableName = "Localizable"_L1;

std::optional<QString> folder(const QString &language) {
    if (!AnyLanguageBundle::languages().contains(language))
        return std::nullopt;
    return tablesFolder + u'/' + language + folderSuffix;
}

/// The folder of the first of the user's languages that has one, with its region or without.
std::optional<QString> defaultFolder() {
    for (const QString &language : DeviceFacts::current().preferredLanguages) {
        if (std::optional<QString> path = folder(language))
            return path;
        if (std::optional<QString> path = folder(language.section(u'-', 0, 0)))
            return path;
    }
    return std::nullopt;
}

QString translation(const QString &path, const QString &key) {
    QTranslator table;
    if (!table.load(path + u'/' + tableName))
        return {};
    return table.translate(tableName.data(), key.toUtf8().constData());
}

} // namespace

AnyLanguageBundle &AnyLanguageBundle::framework() {
    static auto *const bundle = new AnyLanguageBundle;
    return *bundle;
}

QStringList AnyLanguageBundle::languages() {
    registerTables();
    QStringList names = QDir(tablesFolder).entryList({u'*' + folderSuffix}, QDir::Dirs, QDir::Name);
    for (QString &name : names)
        name.chop(folderSuffix.size());
    return names;
}

void AnyLanguageBundle::setLanguage(const QString &language) {
    m_path.setValue(folder(language));
}

QString AnyLanguageBundle::localizedString(const QString &key, const QString &value) const {
    std::optional<QString> path = m_path.value();
    if (!path)
        path = defaultFolder();
    QString text = path ? translation(*path, key) : QString();
    if (!text.isEmpty())
        return text;
    return value.isEmpty() ? key : value;
}

} // namespace KestrioKit
