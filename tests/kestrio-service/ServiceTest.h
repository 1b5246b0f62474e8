#pragma once

#include "tests/service/ServiceProcess.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <httplib.h>
#include <nlohmann/json.hpp>
#include <string>

/// Tests against a service of their own, with the sample surveys and an empty database.
class ServiceTest : public testing::Test {
protected:
    struct Visitor {
        std::int64_t id = 0;
        std::string token;

        /// "/1/visitors/42" and the rest of the path.
        std::string path(const std::string &rest) const;
        /// The same under an environment, in version 2.
        std::string bulkPath(const std::string &environment, const std::string &rest) const;
    };

    struct Reply {
        int status = 0;
        std::string body;

        nlohmann::json json() const { return nlohmann::json::parse(body); }
        std::string error() const { return json().at("error"); }
    };

    ServiceTest();

    /// Ends the service, which must end well: sanitizers report by the exit code.
    void endService();
    void TearDown() override;

    Reply send(const std::string &method, const std::string &path, const std::string &body = {},
               const std::string &token = {}, httplib::Headers headers = {});

    Visitor newVisitor(const std::string &environment = "demo", const std::string &body = "{}");

    /// One kind of records, as GET /records answers.
    nlohmann::json records(const std::string &kind);

    ServiceProcess service;
    httplib::Client client;
};

/// A connection that sends what it is told, be it HTTP or not.
class RawConnection {
public:
    explicit RawConnection(int port);
    ~RawConnection();
    RawConnection(const RawConnection &) = delete;
    RawConnection &operator=(const RawConnection &) = delete;

    /// False when the service closes the connection before it has taken everything.
    bool send(const std::string &bytes);

    /// Sends, and gives the status line that comes back, empty when the service closes the
    /// connection.
    std::string ask(const std::string &bytes);

private:
    int m_socket;
};

/// A valid event as the body of a request.
std::string eventBody(const std::string &name);
