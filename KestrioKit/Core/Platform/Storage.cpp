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

// A write that a crash cut off leaves a file behind, which QSaveFile calls "<name>.json." and six
// letters. One that is not old may be of another process that is writing now.
void Storage::removeLeftovers() {
    const std::optional<QString> folder = libraryFolder();
    if (!folder)
        return;
    static const QRegularExpression unfinished(
        u"\\A(SubmissionQueue(-[0-9a-f]{32})?|VisitorData)\\.json\\.[A-Za-z]{6}\\z"_s);
    for (const QFileInfo &file : QDir(*folder).entryInfoList(QDir::Files)) {
        if (isOld(file) && unfinished.match(file.fileName()).hasMatch())
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
        // Somebody may have tidied up under the running program.
        createLibraryFolder();
        if (!file.open(QIODevice::WriteOnly))
            return false;
    }
    // Before the first byte: nobody else gets to read a token.
    file.setPermissions(ownerOnly);
    // Qt 6.4 commits a file whose last bytes a full disk did not take.
    return file.write(text) == text.size() && file.flush() && file.commit();
}

std::optional<QByteArray> Storage::read(const QString &url, qint64 maximumSize) {
    // Whatever else goes by that name, a folder or a pipe, must not be opened: it could block.
    if (!QFileInfo(url).isFile())
        return std::nullopt;
    QFile file(url);
    if (!file.open(QIODevice::ReadOnly) || file.size() > maximumSize)
        return std::nullopt;
    return file.readAll();
}

} // namespace KestrioKit
