#include "tests/service/ServiceTest.h"

#include <atomic>
#include <thread>

using HttpTests = ServiceTest;

TEST_F(HttpTests, UnknownPathsAndMethodsAreToldApart) {
    for (const std::string path :
         {"/", "/1", "/records/", "/2/errors", "/1/visitors/x/events", "/1/visitors/1/attributes",
          "/1/visitors/1/events/", "/1/visitors/99999999999999999999/events"})
        EXPECT_EQ(send("POST", path, "{}").status, 404) << path;
    for (const std::string method : {"GET", "PUT", "PATCH", "DELETE", "OPTIONS"})
        EXPECT_EQ(send(method, "/1/errors", "{}").status, 405) << method;
    const auto result = client.Get("/2/environments/e/visitors/1/attributes");
    EXPECT_EQ(result->get_header_value("Allow"), "PUT, DELETE");
}

TEST_F(HttpTests, BothLoopbackAddressesAnswer) {
    for (const std::string address : {"127.0.0.1", "::1"}) {
        httplib::Client other(address, service.port());
        const auto result = other.Get("/1/environments/demo/config");
        ASSERT_TRUE(result) << address;
        EXPECT_EQ(result->status, 200);
    }
}

TEST_F(HttpTests, NothingOfARefusedBodyIsTakenForARequest) {
    RawConnection connection(service.port());
    for (const std::string head :
         {"POST /nope", "PUT /1/visitors/7/attributes/a", "PATCH /records"})
        for (const std::string body :
             {"Content-Length: 2\r\n\r\n{}", "Content-Length: 0\r\n\r\n", "\r\n",
              "Transfer-Encoding: chunked\r\n\r\n2\r\n{}\r\n0\r\n\r\n"})
            EXPECT_EQ(connection.ask(head + " HTTP/1.1\r\n" + body).substr(0, 10), "HTTP/1.1 4");
    EXPECT_EQ(connection.ask("GET /nope HTTP/1.1\r\n\r\n"), "HTTP/1.1 404 Not Found");
    // What is left of this body ends the connection.
    EXPECT_EQ(connection.ask("GET /nope HTTP/1.1\r\nContent-Length: 6\r\n\r\n"),
              "HTTP/1.1 404 Not Found");
    EXPECT_EQ(connection.ask("{}\r\n\r\n"), "");
}

TEST_F(HttpTests, MalformedRequestsAreAnsweredAndLoggedOnOneLine) {
    const std::pair<std::string, std::string> requests[] = {
        {"rubbish\r\n\r\n", "HTTP/1.1 400 Bad Request"},
        {"POST /1/errors HTTP/1.1\r\nTransfer-Encoding: chunked\r\n\r\nno size\r\n",
         "HTTP/1.1 400 Bad Request"},
        {"POST /1/errors HTTP/1.1\r\nContent-Type: multipart/form-data; "
         "boundary=b\r\nContent-Length: 9\r\n\r\n{}",
         "HTTP/1.1 415 Unsupported Media Type"},
        {"GET /" + std::string(9000, 'a') + " HTTP/1.1\r\n\r\n", "HTTP/1.1 414 URI Too Long"},
        {"GET /a\x1b[31m\x7f HTTP/1.1\r\n\r\n", "HTTP/1.1 404 Not Found"},
    };
    for (const auto &[bytes, status] : requests)
        EXPECT_EQ(RawConnection(service.port()).ask(bytes), status);
    endService();
    EXPECT_NE(service.output().find("GET /a\\x1b[31m\\x7f 404"), std::string::npos);
    EXPECT_EQ(service.output().find('\x1b'), std::string::npos);
}

TEST_F(HttpTests, ManyClientsAtOnceLoseNothing) {
    constexpr int clients = 32;
    constexpr int eventsEach = 20;
    const Visitor visitor = newVisitor();
    std::atomic<int> accepted = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < clients; ++i)
        threads.emplace_back([&] {
            httplib::Client own("localhost", service.port());
            own.set_keep_alive(true);
            own.set_bearer_token_auth(visitor.token);
            for (int event = 0; event < eventsEach; ++event) {
                const auto result = own.Post(visitor.path("/events"),
                                             eventBody("Checkout Finished"), "application/json");
                accepted += result && result->status == 200 ? 1 : 0;
            }
        });
    for (std::thread &thread : threads)
        thread.join();
    EXPECT_EQ(accepted, clients * eventsEach);
    EXPECT_EQ(records("events").size(), static_cast<std::size_t>(clients * eventsEach));
    EXPECT_EQ(records("showings").size(), static_cast<std::size_t>(clients * eventsEach));
}
