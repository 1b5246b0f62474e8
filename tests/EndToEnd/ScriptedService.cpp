#include "tests/EndToEnd/ScriptedService.h"

namespace KestrioKit {

namespace {

constexpr auto surveyText = R"({"vid":42,"surveyId":7,"responseGroupUid":"G","locale":"en",
    "questions":[
        {"name":1,"type":"nps","props":{"message":"How likely?"}},
        {"name":2,"type":"open","props":{"message":"Why?"}}]})";

} // namespace

void answerAsService(RecordingServer &server) {
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

QList<RecordedRequest> requestsTo(const RecordingServer &server, const QByteArray &target) {
    QList<RecordedRequest> found;
    for (const RecordedRequest &request : server.requests()) {
        if (request.target == target)
            found.append(request);
    }
    return found;
}

} // namespace KestrioKit
