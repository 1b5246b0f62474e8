#pragma once

#include "KestrioKit/Platform/LibraryContext.h"
#include "tests/support/CountedThread.h"
#include "tests/support/ManualClock.h"
#include "tests/support/ManualFlagsSource.h"

#include <gtest/gtest.h>

namespace KestrioKit {

/// What the library takes from the world, in the hand of a test: a clock that stands still, a
/// network that is there until `flagsSource` says otherwise, and an empty library folder.
///
///     queue->appendRequest(record);
///     settle();
///     EXPECT_EQ(sender.requests().size(), 1);
///     advance(5);
class LibraryFixture : public ::testing::Test {
protected:
    LibraryFixture();

    LibraryContext context(std::shared_ptr<URLTransport> transport = {});

    /// Returns when there is nothing left to do, on the library's thread and on the main queue.
    /// What the network or the clock has yet to bring is not waited for.
    void settle();
    /// Lets so much time pass, in one leap, and what is due by then happen.
    void advance(double seconds);
    /// Runs `block` on the library's thread, behind what waits there, and waits for it.
    void onLibraryThread(const Block &block);

    ManualClock clock;
    std::shared_ptr<ManualFlagsSource> flagsSource = std::make_shared<ManualFlagsSource>();
    CountedThread thread{clock};
};

} // namespace KestrioKit
