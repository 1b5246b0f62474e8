#pragma once

#include "KestrioKit/Core/Platform/Storage.h"
#include "KestrioKit/Core/Platform/Threads/Executor.h"

#include <QString>

#include <memory>
#include <optional>
#include <utility>

namespace KestrioKit {

/// The changes of a stored record, which an executor makes asynchronously. Each change replaces the
/// one that waits, if there is one. Thread-safe.
class StoredRecordChanges {
public:
    /// `executor` makes the changes and must outlive the last of them. It calls `tidyUp` once,
    /// after the first change.
    StoredRecordChanges(SerialExecutor &executor, Block tidyUp);

    /// Makes the change, unless a later one replaces it.
    void make(Block change);
    /// Discards the waiting change and makes this one. `make()` does not replace it: its change
    /// follows.
    void makeAlways(Block change);
    /// Runs `block` after the changes so far.
    void run(Block block);
    /// Returns whether a change waits or is being made.
    bool isChanging() const;

private:
    struct Shared;

    void postChange();

    SerialExecutor &m_executor;
    std::shared_ptr<Shared> m_shared;
};

/// A single file in the library's folder, as the place of a `StoredRecord`. Thread-safe.
template <typename Record>
class PlainFile {
public:
    /// `name` has no extension. Files larger than `maximumSize` bytes are not read.
    PlainFile(QLatin1StringView name, qint64 maximumSize)
        : m_name(name), m_maximumSize(maximumSize) {}

    std::optional<Record> load() const {
        return Storage::load<Record>(Storage::localLibraryURL(m_name), m_maximumSize);
    }
    void store(const Record &record) const {
        Storage::store(std::optional(record), Storage::localLibraryURL(m_name));
    }
    void remove() const { Storage::remove(m_name); }
    void erase() const {
        remove();
        Storage::removeLeftovers(m_name, Storage::Leftovers::all);
    }
    void tidyUp() const { Storage::removeLeftovers(m_name, Storage::Leftovers::old); }

private:
    const QLatin1StringView m_name;
    const qint64 m_maximumSize;
};

/// A record on disk. The file executor changes it asynchronously. If several changes wait, only the
/// last one is made. Temporary files that interrupted writes of earlier processes left are removed
/// after the first change. Thread-safe.
///
/// `Place` reads and writes the files. It has `load()` and these operations, which only the
/// executor calls: `store(const Record &)`, `remove()`, `erase()`, which also removes all temporary
/// files, and `tidyUp()`, which only removes old ones.
template <typename Record, typename Place = PlainFile<Record>>
class StoredRecord {
public:
    /// `executor` runs the file operations and must outlive the last of them. The place is made
    /// from `arguments`.
    template <typename... Arguments>
    explicit StoredRecord(SerialExecutor &executor, const Arguments &...arguments)
        : m_place(std::make_shared<Place>(arguments...)),
          m_changes(executor, [place = m_place] { place->tidyUp(); }) {}

    /// Calls `Place::load()` on the calling thread. While `isChanging()`, the result may lack the
    /// last change. Unless the place is thread-safe, this must precede all other operations.
    template <typename... Arguments>
    auto load(const Arguments &...arguments) {
        return m_place->load(arguments...);
    }

    /// Replaces the stored record. `task` lives until the record is written or a later change
    /// replaces it.
    void store(Record record, std::shared_ptr<void> task = {}) {
        m_changes.make([place = m_place, record = std::move(record), task = std::move(task)] {
            place->store(record);
        });
    }
    /// Removes the stored record.
    void remove() {
        m_changes.make([place = m_place] { place->remove(); });
    }
    /// Discards the waiting change and removes everything that the place stores. Later changes
    /// follow the removal and do not replace it. `task` lives until everything is removed.
    void erase(std::shared_ptr<void> task = {}) {
        m_changes.makeAlways([place = m_place, task = std::move(task)] { place->erase(); });
    }

    /// Calls `operation(Place &)` on the executor's thread, after the changes so far.
    template <typename Operation>
    void run(Operation operation) {
        m_changes.run([place = m_place, operation = std::move(operation)] { operation(*place); });
    }

    /// Returns whether a change waits or is being made. If so, memory is newer than the file.
    bool isChanging() const { return m_changes.isChanging(); }

private:
    std::shared_ptr<Place> m_place;
    StoredRecordChanges m_changes;
};

} // namespace KestrioKit
