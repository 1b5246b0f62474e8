#include "KestrioKit/Platform/Storage.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <sys/stat.h>

namespace KestrioKit {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 maximumSize = 1000;
using Record = QMap<QString, QString>;
const Record record{{u"token"_s, u"t"_s}};

class StorageTest : public ::testing::Test {
protected:
    StorageTest() { reset(); }
    ~StorageTest() override { reset(); }

    static std::optional<Record> load() { return Storage::load<Record>(url(), maximumSize); }
    static std::optional<QString> url() { return Storage::localLibraryURL("Test"_L1); }
    static QString folder() { return QFileInfo(*url()).path(); }

    static void put(const QByteArray &text) {
        QFile file(*url());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
    }

private:
    static void reset() {
        QDir(folder()).removeRecursively();
        QFile::remove(folder());
        Storage::setUp();
    }
};

} // namespace

TEST_F(StorageTest, KeepsARecordThatItsOwnerAloneCanRead) {
    EXPECT_EQ(load(), std::nullopt);
    put("{\"token\":\"old\"}");
    QFile::setPermissions(*url(), QFile::Permissions(0x6644));
    Storage::store<Record>(record, url());
    EXPECT_EQ(load(), record);
    struct stat status {};
    const mode_t mask = S_IRWXU | S_IRWXG | S_IRWXO;
    ASSERT_EQ(stat(qPrintable(*url()), &status), 0);
    EXPECT_EQ(status.st_mode & mask, mode_t(S_IRUSR | S_IWUSR));
    ASSERT_EQ(stat(qPrintable(folder()), &status), 0);
    EXPECT_EQ(status.st_mode & mask, mode_t(S_IRWXU));
    EXPECT_EQ(QDir(folder()).entryList(QDir::Files | QDir::Hidden), QStringList(u"Test.json"_s));

    Storage::store<Record>(std::nullopt, url());
    EXPECT_EQ(load(), record);
    Storage::remove("Test"_L1);
    EXPECT_EQ(load(), std::nullopt);
}

TEST_F(StorageTest, TakesAnUnreadableFileAsAbsentAndReplacesIt) {
    const QByteArray whole = encodeJSON(record);
    const QByteArray cases[] = {
        "",         whole.chopped(1),     "[1]",
        "\xff\xfe", QByteArray(500, '['), whole + QByteArray(maximumSize, ' ')};
    for (const QByteArray &text : cases) {
        put(text);
        EXPECT_EQ(load(), std::nullopt) << text.left(20).constData();
        Storage::store<Record>(record, url());
        EXPECT_EQ(load(), record);
    }
    put(whole + QByteArray(maximumSize - whole.size(), ' '));
    EXPECT_EQ(load(), record);
}

TEST_F(StorageTest, IsSilentWhereItCannotWriteOrRead) {
    const std::function<bool()> obstacles[] = {
        [] { return QDir().mkpath(*url()); },
        [] { return QDir(*url()).removeRecursively() && mkfifo(qPrintable(*url()), 0600) == 0; },
        [] { return QDir(folder()).removeRecursively(); },
        [] { return QFile(folder()).open(QIODevice::WriteOnly); },
    };
    for (const auto &putInTheWay : obstacles) {
        SCOPED_TRACE(&putInTheWay - obstacles);
        ASSERT_TRUE(putInTheWay());
        EXPECT_EQ(load(), std::nullopt);
        Storage::store<Record>(record, url());
        Storage::remove("Test"_L1);
        EXPECT_EQ(load(), std::nullopt);
    }
    EXPECT_EQ(Storage::load<Record>(std::nullopt, maximumSize), std::nullopt);
}

TEST_F(StorageTest, EmptiesTheFolderWhenTheEnvironmentSaysSo) {
    Storage::store<Record>(record, url());
    Storage::setUp();
    EXPECT_EQ(load(), record);
    qputenv("KESTRIO_HARD_RESET", "");
    Storage::setUp();
    qunsetenv("KESTRIO_HARD_RESET");
    EXPECT_EQ(load(), std::nullopt);
    EXPECT_TRUE(QFileInfo(folder()).isDir());
}

} // namespace KestrioKit
