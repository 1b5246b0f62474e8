#pragma once

#include "service/Answer.h"

#include <functional>
#include <httplib.h>
#include <latch>
#include <string>

namespace SurveyService {

/// An HTTP/1.1 server on one address, with keep-alive. It logs one line per request.
///
/// Bodies of more than 1 MiB are refused with 413 before the handler sees them, whether their
/// length is announced or they are sent in chunks.
class HttpServer {
public:
    /// Called on any of the server's threads, on several of them concurrently. It must not throw.
    using Handler = std::function<Answer(const httplib::Request &, const std::string &body)>;

    explicit HttpServer(Handler handler);
    ~HttpServer();
    HttpServer(const HttpServer &) = delete;
    HttpServer &operator=(const HttpServer &) = delete;

    /// Binds the address and listens. Port 0 picks a free port; the address "::" includes IPv4.
    /// Returns the port. Throws std::system_error on failure.
    int bind(const std::string &address, int port);

    /// Serves until `stop()` is called. Requests in flight are completed first.
    void run();

    /// Waits until `run()` serves, then ends it. Call it from another thread than `run()`.
    void stop();

private:
    struct Body {
        std::string text;
        std::size_t size = 0; ///< bytes received; `text` holds fewer if the limit is exceeded
        bool complete = true; ///< the body was read to its end
    };

    static Body readBody(const httplib::Request &request, const httplib::ContentReader &reader);

    void installHandlers();
    void respondWithoutBody(const httplib::Request &request, httplib::Response &response) const;
    void respond(const httplib::Request &request, httplib::Response &response,
                 const httplib::ContentReader &reader) const;

    Handler m_handler;
    httplib::Server m_server;
    socket_t m_listener = INVALID_SOCKET;
    int m_port = 0;
    std::latch m_serving{1};
};

} // namespace SurveyService
