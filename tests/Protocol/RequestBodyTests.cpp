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

const CodableDynamicType empty{QString()};

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

TEST(SurveyQuestionResponse, isWrittenInMillisecondsWithoutItsType) {
    const QuestionType open{QuestionType::open, {}};
    const std::pair<Response, QByteArray> cases[] = {
        {{7, {4}, 1700000000.25, 1.5, open},
         R"({"questionId":7,"seenAt":1700000000250.0,"answeredAt":1500.0,"value":4})"},
        // An open question that was left empty has no value.
        {{7, empty, 2, {}, open}, R"({"questionId":7,"seenAt":2000.0})"},
        {{7, empty, 2, {}, {}}, R"({"questionId":7,"seenAt":2000.0,"value":""})"},
    };
    for (const auto &[response, json] : cases)
        EXPECT_EQ(encodeJSON(response), json);
}

TEST(SurveyQuestionResponse, isReadAsItStands) {
    EXPECT_EQ(read<Response>(R"({"questionId":7,"value":4,"seenAt":1500,"answeredAt":2500.5,
                          "questionType":"nps"})"),
              (Response{7, {4}, 1500, 2500.5, QuestionType{QuestionType::nps, {}}}));
    EXPECT_EQ(read<Response>(R"({"questionId":7,"seenAt":1})"), (Response{7, empty, 1, {}, {}}));
    for (const char *json : {R"({"value":4,"seenAt":1})", R"({"questionId":7,"value":4})"})
        EXPECT_TRUE(std::holds_alternative<DecodingError>(decodeJSON<Response>(json))) << json;
}
