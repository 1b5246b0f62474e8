#include "KestrioKit/Core/Queue/StateFolder.h"

#include "KestrioKit/Core/Platform/Storage.h"

#include <QDir>
#include <QRegularExpression>
#include <QUuid>

namespace KestrioKit {

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView filename("SubmissionQueue");

QString sideNames() {
    return filename + u"-[0-9a-f]{32}"_s;
}

void removeLeftovers(Storage::Leftovers which) {
    Storage::removeLeftovers(filename + u'|' + sideNames(), which);
}

// Far more than records with long texts need. A larger file was not written by the library.
qint64 maximumSize(qsizetype queueLimit) {
    constexpr qint64 base = 256 * 1024 * 1024;
    constexpr qint64 kinds = 5;
    constexpr qint64 sizeOfRecord = 8 * 1024;
    return base + kinds * queueLimit * sizeOfRecord;
}

using Attempt = ProcessLock::Attempt;
using Check = ProcessLock::Check;

} // namespace

std::optional<PersistentQueue> StateFolder::read(const QString &path,
                                                 std::optional<qint64> visitor) const {
    const auto state = Storage::load<PersistentQueue>(path, maximumSize(m_queueLimit));
    const bool isOurs = state && state->version == PersistentQueue::currentVersion &&
                        state->visitorIdentifier == visitor;
    return isOurs ? state : std::nullopt;
}

// Returns whether the platform names a folder.
bool StateFolder::open() {
    const std::optional<QString> url = Storage::localLibraryURL(filename);
    if (!url)
        return false;
    const QFileInfo file(*url);
    m_main.emplace(file.path() + u'/' + file.completeBaseName());
    // If no lock file can be created, nothing can be stored either, but stored records can still be
    // sent.
    m_owns = lock(*m_main, Check::thorough) != Attempt::refused;
    return true;
}

StateFolder::Found StateFolder::load(std::optional<qint64> visitor) {
    if (!open())
        return {};
    Found found{.states = {}, .owns = m_owns};
    if (!m_owns)
        return found;
    if (const auto state = read(m_main->path, visitor))
        found.states.append({*state, {}});
    found.states += leftStates(visitor, Occasion::start);
    return found;
}

StateFolder::Found StateFolder::search(std::optional<qint64> visitor) {
    if (!m_main)
        return {};
    if (!keepsOwning())
        takeOver();
    return {.states = m_owns ? leftStates(visitor, Occasion::later) : QList<LeftState>(),
            .owns = m_owns};
}

void StateFolder::store(const PersistentQueue &state) {
    m_isStored = write(state);
    if (m_isStored)
        removeTaken();
}

void StateFolder::removeOnceStored(const LeftFiles &taken) {
    m_taken += taken;
    if (m_isStored)
        removeTaken();
}

bool StateFolder::write(const PersistentQueue &state) {
    if (!m_main)
        return false;
    if (keepsOwning()) {
        if (!Storage::store(std::optional(state), m_main->path))
            return false;
        removeSideFile();
        return true;
    }
    if (!state.hasMessages()) {
        removeSideFile();
        return true;
    }
    if (!m_side)
        m_side.emplace(newBase());
    return lock(*m_side, Check::quick) == Attempt::held &&
           Storage::store(std::optional(state), m_side->path);
}

void StateFolder::remove() {
    m_isStored = true;
    removeSideFile();
    removeTaken();
    if (!m_main || !keepsOwning())
        return;
    QFile::remove(m_main->path);
    for (const auto &file : leftFiles(Check::quick))
        QFile::remove(file->path);
}

void StateFolder::tidyUp() {
    removeLeftovers(Storage::Leftovers::old);
}

void StateFolder::erase() {
    remove();
    removeLeftovers(Storage::Leftovers::all);
}

void StateFolder::eraseStored() {
    const std::optional<QString> url = Storage::localLibraryURL(filename);
    // Opening the folder would make it.
    if (!url || !QFileInfo(*url).dir().exists())
        return;
    StateFolder folder(0);
    if (folder.open())
        folder.erase();
}

QString StateFolder::newBase() const {
    return QFileInfo(m_main->path).path() + u'/' + filename + u'-' +
           QUuid::createUuid().toString(QUuid::Id128);
}

// The lock may have been deleted with the folder, and another process may hold it now.
bool StateFolder::keepsOwning() {
    m_owns = m_owns && lock(*m_main, Check::quick) != Attempt::refused;
    return m_owns;
}

// The previous owner's records may belong to another visitor who may come back. The file is
// therefore kept under the name of a file that a process left behind.
void StateFolder::takeOver() {
    if (lock(*m_main, Check::quick) != Attempt::held)
        return;
    const QString path = m_main->path;
    m_owns = !QFile::exists(path) || QFile::rename(path, newBase() + u".json"_s);
    if (!m_owns)
        m_main.emplace(path.chopped(".json"_L1.size()));
}

ProcessLock::Attempt StateFolder::lock(LockedStateFile &file, Check check) const {
    const Attempt attempt = file.lock.tryLock(check);
    if (attempt != Attempt::failed)
        return attempt;
    // The folder may have been deleted while the program runs.
    Storage::createLibraryFolder();
    return file.lock.tryLock(check);
}

/// Returns the files of ended processes, oldest first, with their locks held.
StateFolder::LeftFiles StateFolder::leftFiles(Check check) const {
    static const QRegularExpression side(QRegularExpression::anchoredPattern(sideNames()));
    const QDir folder = QFileInfo(m_main->path).dir();
    QStringList bases;
    for (const QFileInfo &file : folder.entryInfoList({u"*.json"_s, u"*.lock"_s}, QDir::Files,
                                                      QDir::Time | QDir::Reversed)) {
        if (side.match(file.completeBaseName()).hasMatch())
            bases.append(folder.filePath(file.completeBaseName()));
    }
    bases.removeDuplicates();
    LeftFiles files;
    for (const QString &base : std::as_const(bases)) {
        const auto file = std::make_shared<LockedStateFile>(base);
        const bool isOwn = m_side && m_side->path == file->path;
        if (!isOwn && file->lock.tryLock(check) == Attempt::held)
            files.append(file);
    }
    return files;
}

QList<LeftState> StateFolder::leftStates(std::optional<qint64> visitor, Occasion occasion) const {
    const bool isStart = occasion == Occasion::start;
    QList<LeftState> states;
    for (const auto &file : leftFiles(isStart ? Check::thorough : Check::quick)) {
        if (const auto state = read(file->path, visitor))
            states.append({*state, file});
        else if (isStart && Storage::isOld(QFileInfo(file->path)))
            QFile::remove(file->path);
    }
    return states;
}

void StateFolder::removeSideFile() {
    if (m_side)
        QFile::remove(m_side->path);
    m_side.reset();
}

void StateFolder::removeTaken() {
    for (const auto &file : std::as_const(m_taken))
        QFile::remove(file->path);
    m_taken.clear();
}

} // namespace KestrioKit
