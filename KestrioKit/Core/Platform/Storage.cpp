#include "KestrioKit/Core/Platform/Storage.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSaveFile>
#include <QStandardPaths>

namespace KestrioKit {

using namespace Qt::StringLiterals;

namespace {

constexpr QFile::Permissions ownerOnly = QFile::ReadOwner | QFile::WriteOwner;
constexpr qint64 leftoverAge = 3600; // seconds

} // namespace

std::optional<QString> Storage::libraryFolder() {
    const QString data = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);
    if (data.isEmpty())
        return std::nullopt;
    return data + u"/Kestrio"_s;
}

std::optional<QString> Storage::localLibraryURL(QLatin1StringView filename) {
    const std::optional<QString> folder = libraryFolder();
    if (!folder)
        return std::nullopt;
    return *folder + u'/' + filename + u".json"_s;
}

void Storage::setUp() {
    if (qEnvironmentVariableIsSet("KESTRIO_HARD_RESET"))
        resetLibraryFolder();
    createLibraryFolder();
}

// QSaveFile names its temporary file "<name>.json." plus six letters, and a crash leaves it behind.
// A recent one may belong to another process that is writing it.
void Storage::removeLeftovers(const QString &names, Leftovers which) {
    const std::optional<QString> folder = libraryFolder();
    if (!folder)
        return;
    const QRegularExpression unfinished(
        QRegularExpression::anchoredPattern(u"(%1)\\.json\\.[A-Za-z]{6}"_s.arg(names)));
    for (const QFileInfo &file : QDir(*folder).entryInfoList(QDir::Files)) {
        if ((which == Leftovers::all || isOld(file)) &&
            unfinished.match(file.fileName()).hasMatch())
            QFile::remove(file.filePath());
    }
}

bool Storage::isOld(const QFileInfo &file) {
    return file.lastModified().secsTo(QDateTime::currentDateTime()) > leftoverAge;
}

void Storage::createLibraryFolder() {
    const std::optional<QString> folder = libraryFolder();
    if (!folder || !QDir().mkpath(*folder))
        return;
    QFile::setPermissions(*folder, ownerOnly | QFile::ExeOwner);
}

void Storage::resetLibraryFolder() {
    if (const std::optional<QString> folder = libraryFolder())
        QDir(*folder).removeRecursively();
    createLibraryFolder();
}

void Storage::remove(QLatin1StringView filename) {
    if (const std::optional<QString> url = localLibraryURL(filename))
        QFile::remove(*url);
}

bool Storage::write(const QString &url, const QByteArray &text) {
    QSaveFile file(url);
    if (!file.open(QIODevice::WriteOnly)) {
        // The folder may have been deleted while the program runs.
        createLibraryFolder();
        if (!file.open(QIODevice::WriteOnly))
            return false;
    }
    // Set before the first byte, so that no other user can read a token.
    file.setPermissions(ownerOnly);
    // Qt 6.4 commits a file even if a full disk did not take its last bytes, so it is flushed
    // first.
    return file.write(text) == text.size() && file.flush() && file.commit();
}

std::optional<QByteArray> Storage::read(const QString &url, qint64 maximumSize) {
    // A folder or a pipe with that name must not be opened, since that could block.
    if (!QFileInfo(url).isFile())
        return std::nullopt;
    QFile file(url);
    if (!file.open(QIODevice::ReadOnly) || file.size() > maximumSize)
        return std::nullopt;
    return file.readAll();
}

} // namespace KestrioKit
