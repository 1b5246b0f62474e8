#pragma once

#include "KestrioKit/Platform/URLRequest.h"

namespace KestrioKit {

/// What a test's server answers, and how well it behaves.
struct ServerAnswer {
    enum class Manner {
        /// The whole answer; the connection stays open for the next request.
        whole,
        /// The whole answer, then the connection is closed.
        wholeThenClose,
        /// The first `cutAfter` bytes of the answer, then the connection is closed.
        cut,
        /// Nothing, for as long as the client waits.
        hang,
        /// `body` alone, as it stands, then the connection is closed.
        raw,
    };

    int status = 200;
    QByteArray body = "{}";
    /// "Content-Length" is added unless it is among them.
    QList<HTTPHeader> headers = {};
    Manner manner = Manner::whole;
    /// Counted from the first byte of the status line.
    qsizetype cutAfter = 0;
    /// How many times `body` comes, when it comes whole, and how long the server pauses before each
    /// but the first.
    int bodies = 1;
    std::chrono::milliseconds pause{0};

    /// Status line and headers, with the empty line that ends them.
    QByteArray head() const;

    static ServerAnswer redirect(int status, const QByteArray &location) {
        return {status, {}, {{"Location", location}}};
    }
    static ServerAnswer cut(int status, qsizetype after) {
        return {status, "{}", {}, Manner::cut, after};
    }
    static ServerAnswer raw(const QByteArray &text) { return {200, text, {}, Manner::raw}; }
    static ServerAnswer badly(Manner manner) { return {200, "{}", {}, manner}; }
};

} // namespace KestrioKit
