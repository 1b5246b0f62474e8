#include "KestrioKit/Core/Platform/Storage.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <sys/stat.h>

namespace KestrioKit {

using namespace Qt::StringLiterals;

TEST(StorageTest, KeepsWholeRecordsThatTheirOwnerAloneCanRead) {
    using Record = QMap<QString, QString>;
    constexpr qint64 maximumSize = 1000;
    const Record record{{u"token"_s, u"t"_s}};
    const QByteArray whole = encodeJSON(record);
    const QString path = Storage::localLibraryURL("Test"_L1).value();
    const QString folder = QFileInfo(path).path();
    QDir(folder).removeRecursively();
    Storage::setUp();
    for (const QByteArray &text : {""_ba, whole.chopped(1), "[1]"_ba, "\xff"_ba,
                                   QByteArray(500, '['), whole + QByteArray(maximumSize, ' ')}) {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write(text) == text.size());
        file.setPermissions(QFile::Permissions(0x6644));
        file.close();
        EXPECT_EQ(Storage::load<Record>(path, maximumSize), std::nullopt) << text.constData();
        Storage::store<Record>(record, path);
        EXPECT_EQ(Storage::load<Record>(path, maximumSize), record);
        EXPECT_EQ(file.permissions(), QFile::Permissions(0x6600));
    }
    EXPECT_EQ(QFileInfo(folder).permissions(), QFile::Permissions(0x7700));
    ASSERT_TRUE(QFile::remove(path) && mkfifo(qPrintable(path), S_IRWXU) == 0);
    EXPECT_EQ(Storage::load<Record>(path, maximumSize), std::nullopt) << "waited for a writer";
    QFile::remove(path);
}

} // namespace KestrioKit
