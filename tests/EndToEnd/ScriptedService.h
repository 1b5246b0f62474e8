#pragma once

#include "tests/support/Programs.h"
#include "tests/support/RecordingServer.h"

namespace KestrioKit {

inline constexpr auto surveyText = R"({"vid":42,"surveyId":7,"responseGroupUid":"G","locale":"en",
    "questions":[
        {"name":1,"type":"nps","props":{"message":"How likely?"}},
        {"name":2,"type":"open","props":{"message":"Why?"}}]})";

/// Has a recording server answer as the survey service does: one visitor, and one survey, of two
/// questions, for every event that is not batched. It never answers an event "Unanswered".
inline void answerAsService(RecordingServer &server) {
    server.setScript([](const RecordedRequest &request) -> ServerAnswer {
        if (request.body.contains("\"Unanswered\""))
            return ServerAnswer::badly(ServerAnswer::Manner::hang);
        if (request.target.endsWith("/visitors") || request.method == "PUT")
            return {200, R"({"vid":42,"token":"secret"})"};
        if (request.target.endsWith("/events"))
            return {200, surveyText};
        return {};
    });
}

/// The requests to one path, in the order in which they came.
inline QList<RecordedRequest> requestsTo(const RecordingServer &server, const QByteArray &target) {
    QList<RecordedRequest> requests = server.requests();
    requests.removeIf([&](const RecordedRequest &request) { return request.target != target; });
    return requests;
}

} // namespace KestrioKit
