#include "KestrioKit/Core/Platform/ProcessLock.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <csignal>

#include <sys/wait.h>
#include <unistd.h>

namespace KestrioKit {

using namespace Qt::StringLiterals;

using enum ProcessLock::Attempt;
using enum ProcessLock::Check;

class ProcessLockTest : public ::testing::Test {
protected:
    /// Runs `block` in a forked child, and waits for its end, or only for `block`'s.
    template <typename Block>
    static void inChild(const Block &block) {
        const pid_t child = fork();
        if (child == 0) {
            block();
            _exit(0);
        }
        EXPECT_EQ(waitpid(child, nullptr, 0), child);
    }

    const QTemporaryDir folder;
    const QString path = folder.filePath(u"Test.lock"_s);
};

TEST_F(ProcessLockTest, OneHoldsItUntilItGoesOrItsProcessEndsInWhateverWay) {
    std::optional<ProcessLock> first(path);
    ProcessLock second(path);
    EXPECT_EQ(first->tryLock(thorough), held);
    EXPECT_EQ(second.tryLock(thorough), refused);
    // The child ends with a copy, which it does not hold.
    inChild([&] {
        if (!first->isHeld())
            first.reset();
    });
    EXPECT_TRUE(first->isHeld());
    EXPECT_EQ(second.tryLock(thorough), refused);
    first.reset();
    EXPECT_FALSE(QFile::exists(path));
    inChild([this] { (new ProcessLock(path))->tryLock(quick); });
    EXPECT_TRUE(QFile::exists(path)) << "it was cut off";
    EXPECT_EQ(second.tryLock(quick), held);
}

TEST_F(ProcessLockTest, TheNumberOfADeadHolderMayBeAnotherProcesss) {
    inChild([this] { (new ProcessLock(path))->tryLock(quick); });
    QFile left(path);
    ASSERT_TRUE(left.open(QIODevice::ReadOnly));
    const QByteArray text = left.readAll();
    const QByteArray name = text.mid(text.indexOf('\n'));
    const pid_t other = fork();
    if (other == 0)
        for (;;)
            pause();
    for (const auto &[process, check] : {std::pair(getpid(), quick), std::pair(other, thorough)}) {
        left.close();
        ASSERT_TRUE(left.open(QIODevice::WriteOnly) &&
                    left.write(QByteArray::number(process) + name) > name.size() && left.flush());
        EXPECT_EQ(ProcessLock(path).tryLock(check), held);
    }
    ::kill(other, SIGKILL);
    waitpid(other, nullptr, 0);
}

} // namespace KestrioKit
