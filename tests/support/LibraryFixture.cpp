#include "tests/support/LibraryFixture.h"

#include "KestrioKit/Platform/DispatchQueue.h"
#include "KestrioKit/Platform/Storage.h"
#include "tests/support/Waiting.h"

#include <QDir>
#include <QStandardPaths>

namespace KestrioKit {

namespace {

void runMainQueue() {
    bool done = false;
    DispatchQueue::main().async([&done] { done = true; });
    ASSERT_TRUE(waitFor([&done] { return done; }));
}

} // namespace

LibraryFixture::LibraryFixture() {
    QDir(QStandardPaths::writableLocation(QStandardPaths::AppDataLocation)).removeRecursively();
    Storage::setUp();
}

LibraryContext LibraryFixture::context(std::shared_ptr<URLTransport> transport) {
    return {.clock = clock,
            .executor = thread,
            .fileExecutor = thread,
            .transport = std::move(transport),
            .makeFlagsSource = [source = flagsSource](const QString &) {
                return source->view();
            }};
}

void LibraryFixture::settle() {
    int posted = 0;
    do {
        posted = thread.posted();
        ASSERT_TRUE(waitFor([this] { return thread.done() == thread.posted(); }));
        // Twice: what runs there may have put something more behind itself.
        runMainQueue();
        runMainQueue();
    } while (thread.posted() != posted);
}

void LibraryFixture::advance(double seconds) {
    clock.advance(seconds);
    std::atomic<bool> done = false;
    // Behind all that has become due.
    thread.postAt(clock.now(), [&done] { done = true; });
    ASSERT_TRUE(waitFor([&done] { return done.load(); }));
    settle();
}

void LibraryFixture::onLibraryThread(const Block &block) {
    std::atomic<bool> done = false;
    thread.post([&] {
        block();
        done = true;
    });
    ASSERT_TRUE(waitFor([&done] { return done.load(); }));
}

} // namespace KestrioKit
