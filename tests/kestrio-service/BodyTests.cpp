#include "tests/service/ServiceTest.h"

using BodyTests = ServiceTest;

TEST_F(BodyTests, WrongShapesAreRefusedByTheirPlace) {
    const Visitor visitor = newVisitor();
    const std::string events = visitor.path("/events");
    const std::string batch = visitor.path("/events/batch");
    const std::string history = visitor.path("/surveys/1/history");
    const std::string vid = std::to_string(visitor.id);
    const std::string submit = visitor.bulkPath("demo", "/responses/submit");
    const std::string bulk = visitor.bulkPath("demo", "/attributes");
    const std::string tail = R"("delayed":false,"timestamp":1})";
    const std::string good = R"({"event":"a","metadata":{},)" + tail;
    const std::array<std::string, 4> cases[] = {
        {"POST", "/1/environments/demo/visitors", R"({"userId":null})", "userId: must be text"},
        {"POST", "/1/environments/demo/visitors", "[]", "body: must be an object"},
        {"PUT", "/1/environments/demo/visitors/" + vid, "{}", "userId: missing"},
        {"POST", events, R"({"metadata":{},)" + tail, "event: missing"},
        {"POST", events, R"({"event":"a","metadata":{"sw":"1"},)" + tail, "metadata.sw: must be"},
        {"POST", events, R"({"event":"a","metadata":{"sw":1.5},)" + tail, "metadata.sw: must be"},
        {"POST", events, R"({"event":"a","metadata":{"x":true},)" + tail, "metadata.x: must be"},
        {"POST", events, R"({"event":"a","metadata":{"x":{"a":1}},)" + tail, "metadata.x: must"},
        {"POST", events, R"({"event":"a","metadata":{},"delayed":0,"timestamp":1})", "delayed: "},
        {"POST", events, R"({"event":"a","metadata":{},"delayed":false,"timestamp":-1})",
         "timestamp: must be an unsigned"},
        {"POST", batch, R"({"events":[)" + good + R"(,{"event":1}],"timestamp":1})",
         "events[1].metadata: missing"},
        {"POST", batch, R"({"events":[]})", "timestamp: missing"},
        {"PUT", visitor.path("/attributes/k"), R"({"value":1})", "value: must be text"},
        {"PUT", bulk, R"({"a":"1","b":2})", "b: must be text"},
        {"DELETE", bulk, R"({"delete":["a",2]})", "delete[1]: must be text"},
        {"POST", history,
         R"({"eid":"demo","sid":1,"vid":)" + vid +
             R"(,"isNew":true,"action":"opened","responseGroupUid":"G"})",
         "action: must be"},
        {"POST", submit,
         R"({"responses":[{"questionId":1,"seenAt":1,"value":[]}],"meta":{},"responseGroupUid":"G"})",
         "responses[0].value: must be"},
        {"POST", submit, R"({"responses":[],"meta":{}})", "responseGroupUid: missing"},
        {"POST", "/1/errors", R"({"envId":"e","userAgent":"u","meta":{},"err":{}})",
         "err.message: missing"},
    };
    for (const auto &[method, path, body, complaint] : cases) {
        const Reply reply = send(method, path, body, visitor.token);
        EXPECT_EQ(reply.status, 400) << body;
        EXPECT_EQ(reply.error().substr(0, complaint.size()), complaint) << body;
    }
    for (const std::string kind : {"events", "history", "responses", "attributeChanges", "errors"})
        EXPECT_TRUE(records(kind).empty()) << kind;
}

TEST_F(BodyTests, TextThatIsNotJsonIsRefused) {
    const std::string bodies[] = {
        "",
        "{",
        "{}x",
        "nul",
        "{\"userId\":\"\xFF\"}",
        "\xEF\xBB\xBF{}",
        R"({"userId":1e999})",
        std::string(100'000, '['),
        "{\"a\":" + std::string(100'000, '[') + std::string(100'000, ']') + '}',
    };
    for (const std::string &body : bodies) {
        const Reply reply = send("POST", "/1/environments/demo/visitors", body);
        EXPECT_EQ(reply.status, 400) << body.substr(0, 20);
        EXPECT_EQ(reply.error().substr(0, 6), "body: ") << body.substr(0, 20);
    }
    EXPECT_TRUE(records("visitors").empty());
}

TEST_F(BodyTests, BodiesAboveOneMebibyteAreRefused) {
    constexpr std::size_t mebibyte = 1024 * 1024;
    const std::string path = "/1/environments/demo/visitors";
    for (const std::size_t size : {mebibyte, mebibyte + 1, 8 * mebibyte}) {
        const std::string body = "{}" + std::string(size - 2, ' ');
        const int expected = size > mebibyte ? 413 : 200;
        EXPECT_EQ(send("POST", path, body).status, expected) << size;
        const auto writeAll = [&body](std::size_t, httplib::DataSink &sink) {
            sink.write(body.data(), body.size());
            sink.done();
            return true;
        };
        const auto chunked = client.Post(path, writeAll, "application/json");
        ASSERT_TRUE(chunked) << httplib::to_string(chunked.error());
        EXPECT_EQ(chunked->status, expected) << size;
    }
}

TEST_F(BodyTests, EndlessBodyIsCutOff) {
    RawConnection connection(service.port());
    connection.send("POST /1/errors HTTP/1.1\r\nTransfer-Encoding: chunked\r\n\r\n4000000\r\n");
    EXPECT_FALSE(connection.send(std::string(0x4000000, ' ')));
    endService();
    EXPECT_NE(service.output().find("POST /1/errors 413"), std::string::npos);
}

TEST_F(BodyTests, ManyAttributesAreTakenAtOnce) {
    const Visitor visitor = newVisitor();
    nlohmann::json attributes;
    for (int i = 0; i < 60'000; ++i)
        attributes["key" + std::to_string(i)] = "v";
    const std::string path = visitor.bulkPath("demo", "/attributes");
    EXPECT_EQ(send("PUT", path, attributes.dump(), visitor.token).status, 200);
    EXPECT_EQ(records("attributes").size(), 60'000U);
}
