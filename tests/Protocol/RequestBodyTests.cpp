#include "KestrioKit/Protocol/Attributes.h"
#include "KestrioKit/Protocol/RecordError.h"
#include "KestrioKit/Protocol/SurveyEvent.h"
#include "KestrioKit/Protocol/SurveyResponse.h"
#include "KestrioKit/Protocol/TrackEvent.h"
#include "KestrioKit/Protocol/Visitors.h"
#include "tests/support/ManualClock.h"

#include <gtest/gtest.h>

#include <limits>

using namespace KestrioKit;
using namespace Qt::StringLiterals;

namespace {

using Response = Request::SurveyQuestionResponse;
using Value = CodableDynamicType;

// Both directions: what is stored in the state file must come back the same.
template <typename Record>
void expectJSON(const Record &record, const QByteArray &json) {
    EXPECT_EQ(encodeJSON(record), json);
    const auto read = decodeJSON<Record>(json);
    const auto *const error = std::get_if<DecodingError>(&read);
    ASSERT_FALSE(error) << json.constData() << qPrintable(error->path);
    EXPECT_EQ(std::get<Record>(read), record) << json.constData();
}

Response readResponse(const QByteArray &json) {
    return std::get<Response>(decodeJSON<Response>(json));
}

const Request::Metadata page{{}, {}, u"p"_s, {}, {}};
const Value empty = Value::stringValue({});

} // namespace

TEST(RequestBody, hasTheServicesKeysInOrder) {
    expectJSON(Request::Visitors{}, "{}");
    expectJSON(Request::Visitors{u"u"_s}, R"({"userId":"u"})");
    expectJSON(Request::UpdateUserIdentifier{u""_s}, R"({"userId":""})");
    expectJSON(Request::TrackEvent{u"😀\n\""_s, page, false, 1},
               R"({"event":"😀\n\"","metadata":{"pg":"p"},"delayed":false,"timestamp":1})");
    expectJSON(Request::BatchTrackEvent{{{u"b"_s, {}, false, 2}, {u"a"_s, {}, true, 1}}, 3},
               R"({"events":[{"event":"b","metadata":{},"delayed":false,"timestamp":2},)"
               R"({"event":"a","metadata":{},"delayed":true,"timestamp":1}],"timestamp":3})");
    expectJSON(Request::UpdateAttribute{u"k"_s, u"v"_s}, R"({"key":"k","value":"v"})");
    expectJSON(Request::UpdateAttribute::RequestBody{u"v"_s}, R"({"value":"v"})");
    expectJSON(Request::UpdateAttributes{{{u"k"_s, u"v"_s}}}, R"({"attributes":{"k":"v"}})");
    expectJSON(Request::RemoveAttributes{{u"b"_s, u"a"_s}}, R"({"delete":["b","a"]})");
    expectJSON(Request::RecordError{u"e"_s, {}, u"ua"_s, page, {u"m"_s, {}}},
               R"({"envId":"e","userAgent":"ua","meta":{"pg":"p"},"err":{"message":"m"}})");
    expectJSON(Request::RecordError{u"e"_s, 4, u"ua"_s, {}, {u"m"_s, u"s"_s}},
               R"({"envId":"e","vid":4,"userAgent":"ua","meta":{},)"
               R"("err":{"message":"m","stack":"s"}})");
}

TEST(RequestBody, surveyEventsNameTheirAction) {
    using Request::SurveyEventType;
    expectJSON(Request::SurveyEvent{u"e"_s, 1, 2, 3, false, SurveyEventType::closed, u"g"_s},
               R"({"eid":"e","sid":1,"qid":2,"vid":3,"isNew":false,"action":"closed",)"
               R"("responseGroupUid":"g"})");
    expectJSON(Request::SurveyEvent{u"e"_s, 1, {}, 3, true, SurveyEventType::seen, u"g"_s},
               R"({"eid":"e","sid":1,"vid":3,"isNew":true,"action":"seen",)"
               R"("responseGroupUid":"g"})");
    const auto unknown = decodeJSON<Request::SurveyEvent>(
        R"({"eid":"e","sid":1,"vid":3,"isNew":true,"action":"opened","responseGroupUid":"g"})");
    EXPECT_EQ(std::get<DecodingError>(unknown).path, u"action"_s);
}

TEST(RequestBody, eventsAreDatedInWholeSeconds) {
    ManualClock clock;
    clock.advance(0.9);
    EXPECT_EQ(Request::makeTrackEvent(u"e"_s, page, clock),
              (Request::TrackEvent{u"e"_s, page, false, 1700000000}));
    clock.advance(-1.7e9 - 3600);
    EXPECT_EQ(Request::makeBatchTrackEvent({}, clock), (Request::BatchTrackEvent{{}, 0}));
}

TEST(SurveyQuestionResponse, isWrittenInMillisecondsWithoutItsType) {
    const QuestionType likert{QuestionType::likert, {}};
    EXPECT_EQ(
        encodeJSON(Response{7, Value::intValue(4), 1700000000.25, 1700000001.5, likert}),
        R"({"questionId":7,"seenAt":1700000000250.0,"answeredAt":1700000001500.0,"value":4})");
    EXPECT_EQ(encodeJSON(Response{7, Value::dictStringValue({{u"1"_s, u"a"_s}}), 2, {}, {}}),
              R"({"questionId":7,"seenAt":2000.0,"value":{"1":"a"}})");
}

TEST(SurveyQuestionResponse, leavesOutTheValueOfAnOpenQuestionLeftEmpty) {
    const QuestionType open{QuestionType::open, {}};
    const QuestionType other{QuestionType::other, u"open"_s};
    const std::pair<Response, bool> cases[] = {
        {{1, empty, 0, {}, open}, false},
        {{1, Value::stringValue(u" "_s), 0, {}, open}, true},
        {{1, empty, 0, {}, other}, true},
        {{1, empty, 0, {}, std::nullopt}, true},
    };
    for (const auto &[response, written] : cases)
        EXPECT_EQ(encodeJSON(response).contains(R"("value":)"), written)
            << encodeJSON(response).constData();
}

TEST(SurveyQuestionResponse, isReadAsItStands) {
    EXPECT_EQ(readResponse(R"({"questionId":7,"value":4,"seenAt":1500,"answeredAt":2500.5,
                          "questionType":"nps"})"),
              (Response{7, Value::intValue(4), 1500, 2500.5, QuestionType{QuestionType::nps, {}}}));
    EXPECT_EQ(readResponse(R"({"questionId":7,"seenAt":1})"), (Response{7, empty, 1, {}, {}}));
    for (const char *json : {R"({"questionId":7,"value":4})", R"({"value":4,"seenAt":1})",
                             R"({"questionId":7,"value":null,"seenAt":1})",
                             R"({"questionId":7,"value":4,"seenAt":1,"answeredAt":"x"})"})
        EXPECT_TRUE(std::holds_alternative<DecodingError>(decodeJSON<Response>(json))) << json;
}

TEST(SurveyQuestionResponse, canBeReadHoweverOftenItWasStored) {
    constexpr int farTooOften = 200;
    Response response{7, empty, 1700000000, 1700000001, QuestionType{QuestionType::open, {}}};
    response = readResponse(encodeJSON(response));
    EXPECT_EQ(response, (Response{7, empty, 1700000000000, 1700000001000, {}}));
    for (int time = 0; time < farTooOften; ++time)
        response = readResponse(encodeJSON(response));
    EXPECT_EQ(response.seenAt, std::numeric_limits<double>::max());
}

TEST(RequestBody, surveyResponsesKeepTheirOrder) {
    const QByteArray json =
        R"({"surveyId":3,"body":{"responses":[{"questionId":9,"seenAt":0.0,"value":1},)"
        R"({"questionId":8,"seenAt":0.0,"value":"x"}],"meta":{"pg":"p"},)"
        R"("responseGroupUid":"g"},"completedAt":1700000000.5})";
    const QList<Response> responses{{9, {1}, 0, {}, {}}, {8, {u"x"_s}, 0, {}, {}}};
    expectJSON(Request::SurveyResponse{3, {responses, page, u"g"_s}, 1700000000.5}, json);
}
