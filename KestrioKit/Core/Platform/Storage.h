#pragma once

#include "KestrioKit/Core/Platform/JSON/JSONCoding.h"

#include <QString>

#include <optional>

class QFileInfo;

namespace KestrioKit {

/// The library's JSON files: one folder "Kestrio" within the application's data folder
/// (`QStandardPaths::AppDataLocation`, which follows the application's name and, where it applies,
/// "XDG_DATA_HOME"). The folder and its files can be read by their owner alone. Failures are
/// silent: what cannot be written is not, what cannot be read is absent. Thread-safe.
class Storage {
public:
    Storage() = delete;

    /// Makes the folder. When the environment has "KESTRIO_HARD_RESET", with whatever value, the
    /// folder is emptied first.
    static void setUp();

    /// Makes the folder unless it is there.
    static void createLibraryFolder();

    /// Removes what a process left unfinished in the folder, once it is old.
    static void removeLeftovers();
    /// Whether the file was last written an hour ago or earlier: no process is at it any more.
    static bool isOld(const QFileInfo &file);

    /// Where the file of that name lies; absent when the platform names no data folder.
    static std::optional<QString> localLibraryURL(QLatin1StringView filename);

    /// Replaces the whole file, atomically. Returns whether it did.
    template <typename Record>
    static bool store(const std::optional<Record> &record, const std::optional<QString> &url) {
        return record && url && write(*url, encodeJSON(*record));
    }

    /// Reads a record; absent when there is no file, or it is larger than `maximumSize` bytes, or
    /// it does not decode.
    template <typename Record>
    static std::optional<Record> load(const std::optional<QString> &url, qint64 maximumSize) {
        const std::optional<QByteArray> text = url ? read(*url, maximumSize) : std::nullopt;
        if (!text)
            return std::nullopt;
        Decoded<Record> decoded = decodeJSON<Record>(*text);
        Record *const record = std::get_if<Record>(&decoded);
        return record ? std::optional(std::move(*record)) : std::nullopt;
    }

    /// Removes the file of that name.
    static void remove(QLatin1StringView filename);

private:
    static std::optional<QString> libraryFolder();
    static void resetLibraryFolder();
    static bool write(const QString &url, const QByteArray &text);
    static std::optional<QByteArray> read(const QString &url, qint64 maximumSize);
};

} // namespace KestrioKit
