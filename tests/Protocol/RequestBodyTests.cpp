#include "KestrioKit/Protocol/SurveyResponse.h"
#include "KestrioKit/Protocol/TrackEvent.h"
#include "tests/support/ManualClock.h"

#include <gtest/gtest.h>

using namespace KestrioKit;
using namespace Qt::StringLiterals;

namespace {

using Response = Request::SurveyQuestionResponse;

template <typename Record>
Record read(const QByteArray &json) {
    return std::get<Record>(decodeJSON<Record>(json));
}

} // namespace

TEST(RequestBody, eventsAreDatedInWholeSeconds) {
    ManualClock clock;
    clock.advance(0.9);
    EXPECT_EQ(Request::makeTrackEvent(u"e"_s, {}, clock).timestamp, 1700000000);
    clock.advance(-1.7e9 - 3600);
    EXPECT_EQ(Request::makeTrackEvent(u"e"_s, {}, clock).timestamp, 0);
}

TEST(Metadata, holdsExtraEntriesBesideItsFields) {
    using Request::Metadata;
    const DeviceFacts phone{QSize(390, 844), u"de"_s, {}, {}};
    const Metadata::Extra extra{{u"plan"_s, {u"pro"_s}}, {u"sw"_s, {u"wide"_s}}};
    const QByteArray json = encodeJSON(Request::makeMetadata(phone, u"home"_s, u"fr-CA"_s, extra));
    EXPECT_EQ(json, R"({"sh":844,"pg":"home","l":"fr-CA","plan":"pro","sw":"wide"})");
    // What was stored is still sent the same, though "sw" should be a number.
    EXPECT_EQ(encodeJSON(read<Metadata>(json)), json);
    const QByteArray odd = R"({"sw":390,"pg":null,"list":[1],"deep":{"a":{}},"plan":"pro"})";
    EXPECT_EQ(encodeJSON(read<Metadata>(odd)), R"({"sw":390,"plan":"pro"})");
}

TEST(SurveyQuestionResponse, isReadAsItStands) {
    EXPECT_EQ(read<Response>(R"({"questionId":7,"value":4,"seenAt":1500,"answeredAt":2500.5,
                          "questionType":"nps"})"),
              (Response{7, {4}, 1500, 2500.5, QuestionType{QuestionType::nps, {}}}));
    const Response untyped{7, {QString()}, 1, {}, {}};
    EXPECT_EQ(read<Response>(R"({"questionId":7,"seenAt":1})"), untyped);
    // Only an open question that was left empty is written without a value.
    EXPECT_EQ(encodeJSON(untyped), R"({"questionId":7,"seenAt":1000.0,"value":""})");
    for (const char *json : {R"({"value":4,"seenAt":1})", R"({"questionId":7,"value":4})"})
        EXPECT_TRUE(std::holds_alternative<DecodingError>(decodeJSON<Response>(json))) << json;
}
