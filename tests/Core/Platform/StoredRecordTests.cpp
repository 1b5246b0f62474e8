#include "KestrioKit/Core/Platform/StoredRecord.h"

#include <gtest/gtest.h>

#include <QStringList>

namespace KestrioKit {

using namespace Qt::StringLiterals;

/// Runs the blocks when the test says so.
class HeldExecutor final : public SerialExecutor {
public:
    void post(Block block) override { m_blocks.append(std::move(block)); }
    void release() {
        for (const Block &block : std::exchange(m_blocks, {}))
            block();
    }

private:
    QList<Block> m_blocks;
};

/// Notes what is done to it.
struct NotingPlace {
    explicit NotingPlace(QStringList *list) : notes(*list) {}

    void store(int number) const { notes.append(QString::number(number)); }
    void remove() const { notes.append(u"remove"_s); }
    void erase() const { notes.append(u"erase"_s); }
    void tidyUp() const { notes.append(u"tidy up"_s); }

    QStringList &notes;
};

TEST(StoredRecordTest, MakesTheLastOfTheWaitingChangesAndErasesInAnyCase) {
    HeldExecutor executor;
    QStringList notes;
    StoredRecord<int, NotingPlace> record(executor, &notes);
    const auto made = [&] {
        EXPECT_TRUE(record.isChanging());
        executor.release();
        EXPECT_FALSE(record.isChanging());
        return std::exchange(notes, {});
    };
    auto task = std::make_shared<int>();
    record.store(1, task);
    EXPECT_EQ(task.use_count(), 2);
    record.remove();
    EXPECT_EQ(task.use_count(), 1) << "a replaced change keeps the application waiting";
    record.store(2, task);
    record.run([](NotingPlace &place) { place.notes.append(u"run"_s); });
    EXPECT_EQ(made(), QStringList({u"2"_s, u"tidy up"_s, u"run"_s}));
    EXPECT_EQ(task.use_count(), 1);
    record.store(3);
    record.erase(task);
    record.store(4);
    record.store(5);
    EXPECT_EQ(made(), QStringList({u"erase"_s, u"5"_s}));
    EXPECT_EQ(task.use_count(), 1);
    record.store(6);
    record.erase();
    EXPECT_EQ(made(), QStringList(u"erase"_s));
}

} // namespace KestrioKit
