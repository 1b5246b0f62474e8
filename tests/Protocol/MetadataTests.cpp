#include "KestrioKit/Protocol/Metadata.h"

#include <gtest/gtest.h>

using namespace KestrioKit;
using namespace Qt::StringLiterals;

namespace {

using Request::Metadata;
using Value = CodableDynamicType;

const DeviceFacts phone{QSize(390, 844), u"de"_s, {}, {}, {}};

QByteArray rewritten(const QByteArray &json) {
    return encodeJSON(std::get<Metadata>(decodeJSON<Metadata>(json)));
}

} // namespace

TEST(Metadata, describesTheDeviceAndTheCallersContext) {
    EXPECT_EQ(encodeJSON(Request::makeMetadata(phone)), R"({"sw":390,"sh":844,"l":"de"})");
    EXPECT_EQ(encodeJSON(Request::makeMetadata(phone, u"home"_s, u"fr-CA"_s)),
              R"({"sw":390,"sh":844,"pg":"home","l":"fr-CA"})");
    const DeviceFacts screenless{{}, u"en"_s, {}, {}, {}};
    EXPECT_EQ(encodeJSON(Request::makeMetadata(screenless)), R"({"l":"en"})");
}

TEST(Metadata, writesExtraEntriesBesideItsFields) {
    const Metadata::Extra extra{{u"plan"_s, Value::stringValue(u"pro"_s)},
                                {u"seats"_s, Value::intValue(3)},
                                {u"flags"_s, Value::dictBoolValue({{u"beta"_s, true}})}};
    const Metadata metadata = Request::makeMetadata(phone, {}, {}, extra);
    const QByteArray json =
        R"({"sw":390,"sh":844,"l":"de","flags":{"beta":true},"plan":"pro","seats":3})";
    EXPECT_EQ(encodeJSON(metadata), json);
    EXPECT_EQ(std::get<Metadata>(decodeJSON<Metadata>(json)), metadata);
}

TEST(Metadata, letsAnExtraEntryReplaceAField) {
    const Metadata::Extra extra{{u"sw"_s, Value::stringValue(u"wide"_s)},
                                {u"l"_s, Value::stringValue(u"tlh"_s)}};
    const QByteArray json = encodeJSON(Request::makeMetadata(phone, {}, {}, extra));
    EXPECT_EQ(json, R"({"sh":844,"l":"tlh","sw":"wide"})");
    // What was stored is still sent the same, though "sw" should be a number.
    EXPECT_EQ(rewritten(json), json);
}

TEST(Metadata, passesOverWhatItCannotHold) {
    EXPECT_EQ(rewritten(R"({"sw":390,"pg":null,"list":[1],"deep":{"a":{}},"plan":"pro"})"),
              R"({"sw":390,"plan":"pro"})");
    EXPECT_FALSE(std::get<Metadata>(decodeJSON<Metadata>(R"({"sw":390})")).extra);
    EXPECT_TRUE(std::holds_alternative<DecodingError>(decodeJSON<Metadata>("[]")));
}
