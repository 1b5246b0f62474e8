#pragma once

#include "KestrioKit/Core/Platform/JSON/JSONCoding.h"

#include <QString>

#include <optional>

class QFileInfo;

namespace KestrioKit {

/// Reads and writes the library's JSON files. They are in the folder "Kestrio" within the
/// application's data folder (`QStandardPaths::AppDataLocation`, which depends on the application's
/// name and, on some systems, on "XDG_DATA_HOME"). Only their owner can read them. Failures are
/// silent: a file that cannot be written is skipped, and one that cannot be read counts as absent.
/// Thread-safe.
class Storage {
public:
    Storage() = delete;

    /// Creates the folder. If the environment variable "KESTRIO_HARD_RESET" exists, with any value,
    /// the folder is emptied first.
    static void setUp();

    /// Creates the folder if it does not exist, and lets only its owner access it.
    static void createLibraryFolder();

    enum class Leftovers { old, all };
    /// Removes the temporary files that interrupted writes left in the folder. `names` is a regular
    /// expression for the names of the files that were being written, without their extension.
    static void removeLeftovers(const QString &names, Leftovers which);
    /// Returns whether the file was last modified at least an hour ago. No process is writing it
    /// any more then.
    static bool isOld(const QFileInfo &file);

    /// Returns the path of the JSON file with this name, which is given without its extension.
    /// Returns nothing if the platform has no data folder.
    static std::optional<QString> localLibraryURL(QLatin1StringView filename);

    /// Atomically replaces the whole file. Returns whether it succeeded.
    template <typename Record>
    static bool store(const std::optional<Record> &record, const std::optional<QString> &url) {
        return record && url && write(*url, encodeJSON(*record));
    }

    /// Reads a record. Returns nothing if the file does not exist, is larger than `maximumSize`
    /// bytes, or cannot be decoded.
    template <typename Record>
    static std::optional<Record> load(const std::optional<QString> &url, qint64 maximumSize) {
        const std::optional<QByteArray> text = url ? read(*url, maximumSize) : std::nullopt;
        if (!text)
            return std::nullopt;
        Decoded<Record> decoded = decodeJSON<Record>(*text);
        Record *const record = std::get_if<Record>(&decoded);
        return record ? std::optional(std::move(*record)) : std::nullopt;
    }

    /// Removes the file with this name, given without its extension.
    static void remove(QLatin1StringView filename);

private:
    static std::optional<QString> libraryFolder();
    static void resetLibraryFolder();
    static bool write(const QString &url, const QByteArray &text);
    static std::optional<QByteArray> read(const QString &url, qint64 maximumSize);
};

} // namespace KestrioKit
