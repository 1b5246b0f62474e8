#include "tests/service/ServiceTest.h"

namespace {

using Attributes = std::map<std::string, std::string>;

Attributes attributesOf(const nlohmann::json &records) {
    Attributes attributes;
    for (const auto &record : records)
        attributes.emplace(record.at("key"), record.at("value"));
    return attributes;
}

} // namespace

using AttributeTests = ServiceTest;

TEST_F(AttributeTests, ChangesAreLoggedAndTheLastValueIsKept) {
    const Visitor visitor = newVisitor();
    const std::string bulk = visitor.bulkPath("demo", "/attributes");
    const std::string one = visitor.path("/attributes/plan");
    EXPECT_EQ(send("PUT", one, R"({"value":"free"})", visitor.token).status, 200);
    EXPECT_EQ(send("PUT", bulk, R"({"plan":"paid","!email":"a@b.example"})", visitor.token).status,
              200);
    EXPECT_EQ(attributesOf(records("attributes")),
              (Attributes{{"plan", "paid"}, {"!email", "a@b.example"}}));
    EXPECT_EQ(send("DELETE", bulk, R"({"delete":["plan","unknown"]})", visitor.token).status, 200);
    EXPECT_EQ(attributesOf(records("attributes")), (Attributes{{"!email", "a@b.example"}}));

    const auto changes = records("attributeChanges");
    ASSERT_EQ(changes.size(), 3U);
    EXPECT_EQ(changes.at(0).at("change"), "set");
    EXPECT_EQ(changes.at(0).at("key"), "plan");
    EXPECT_EQ(changes.at(0).at("body").dump(), R"({"value":"free"})");
    EXPECT_EQ(changes.at(1).at("change"), "setMany");
    EXPECT_EQ(changes.at(1).at("key"), nullptr);
    EXPECT_EQ(changes.at(2).at("change"), "remove");
}

TEST_F(AttributeTests, AttributesBelongToOneVisitor) {
    const Visitor visitors[] = {newVisitor(), newVisitor()};
    for (const Visitor &visitor : visitors)
        send("PUT", visitor.path("/attributes/plan"), R"({"value":"free"})", visitor.token);
    send("DELETE", visitors[0].bulkPath("demo", "/attributes"), R"({"delete":["plan"]})",
         visitors[0].token);
    const auto left = records("attributes");
    ASSERT_EQ(left.size(), 1U);
    EXPECT_EQ(left.at(0).at("vid"), visitors[1].id);
}

TEST_F(AttributeTests, KeysArriveWhole) {
    const std::pair<std::string, std::string> keys[] = {
        {"", ""},
        {"a%20b", "a b"},
        {"a/b//c/", "a/b//c/"},
        {"a%2Fb%3Fc", "a/b?c"},
        {"100%25", "100%"},
        {"100%zz", "100%zz"},
        {"a+b", "a+b"},
        {"%F0%9F%98%80%0A%22", "\U0001F600\n\""},
        {"%u1234", "%u1234"},
        {std::string(7000, 'k'), std::string(7000, 'k')},
    };
    const Visitor visitor = newVisitor();
    Attributes expected;
    client.set_url_encode(false);
    for (const auto &[encoded, key] : keys) {
        EXPECT_EQ(
            send("PUT", visitor.path("/attributes/" + encoded), R"({"value":"v"})", visitor.token)
                .status,
            200);
        expected[key] = "v";
    }
    EXPECT_EQ(attributesOf(records("attributes")), expected);
    EXPECT_EQ(
        send("PUT", visitor.path("/attributes/%FF"), R"({"value":"v"})", visitor.token).status,
        400);
}
