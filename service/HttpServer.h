#pragma once

#include "service/Answer.h"

#include <functional>
#include <httplib.h>
#include <latch>
#include <string>

namespace SurveyService {

/// HTTP/1.1 on one address, with keep-alive; one log line a request.
///
/// Bodies of more than 1 MiB are refused with 413 before the handler sees them, whether their
/// length is announced or they come in chunks.
class HttpServer {
public:
    /// Called on any of the server's threads, from several at once. Must not throw.
    using Handler = std::function<Answer(const httplib::Request &, const std::string &body)>;

    explicit HttpServer(Handler handler);
    ~HttpServer();
    HttpServer(const HttpServer &) = delete;
    HttpServer &operator=(const HttpServer &) = delete;

    /// Binds and listens; 0 picks a free port. Gives the port. Throws std::system_error. "::" takes
    /// IPv4 too.
    int bind(const std::string &address, int port);

    /// Serves until `stop`. Requests that are being answered then are answered to their end.
    void run();

    /// Waits until `run` serves, and ends it. From another thread than `run`.
    void stop();

private:
    struct Body {
        std::string text;
        std::size_t size = 0; ///< as received, which is more than `text` holds above the limit
        bool complete = true; ///< nothing of it is left unread
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
