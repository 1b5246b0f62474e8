#pragma once

#include "KestrioKit/Platform/Atomic.h"
#include "KestrioKit/Platform/LibraryThread.h"
#include "KestrioKit/Platform/NetworkTransport.h"
#include "tests/support/RecordingServer.h"

#include <gtest/gtest.h>

namespace KestrioKit {

/// Sends requests from the library's thread and waits for their results.
class NetworkTransportTest : public ::testing::Test {
protected:
    using Results = Atomic<QList<URLResult>>;

    static URLRequest request(const QUrl &url, const QByteArray &method = "POST",
                              const QByteArray &body = "{}") {
        return {method, url, {{"Content-Type", "application/json"}}, body, patience};
    }

    /// Appends the result to `results` when it comes.
    static URLCompletion into(std::shared_ptr<Results> results) {
        return [results = std::move(results)](const URLResult &result) {
            results->mutate([&](auto &list) { list.append(result); });
        };
    }

    URLResult resultOf(const URLRequest &request,
                       URLTransport::Body body = URLTransport::Body::keep) {
        const auto results = std::make_shared<Results>();
        transport.send(request, body, into(results));
        const bool came = waitFor([&] { return !results->value().isEmpty(); });
        EXPECT_TRUE(came) << "no completion";
        return results->value().value(0);
    }

    LibraryThread thread{Clock::system()};
    NetworkTransport transport{thread};
};

} // namespace KestrioKit
