#include "tests/support/SurveyFixture.h"

#include <QJsonArray>

namespace KestrioKit {

using namespace Qt::StringLiterals;

namespace {

QString compact(const QJsonValue &value) {
    return QString::fromUtf8(QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact))
        .chopped(1)
        .sliced(1);
}

} // namespace

SurveyFixture::SurveyFixture() {
    answer("POST /1/environments/env/visitors", {200, R"({"vid":1,"token":"t1"})"});
    core = KestrioCore::make(context());
    core->configure(u"env"_s);
    finish();
}

void SurveyFixture::hold(const QByteArray &questions, const QByteArray &locale) {
    answer("POST /events", {200, R"({"vid":1,"surveyId":7,"responseGroupUid":"g","locale":")" +
                                     locale + R"(","questions":)" + questions + "}"});
    core->track(u"Event"_s, [](SurveyState) {});
    finish();
}

QStringList SurveyFixture::history() {
    finish();
    QStringList history;
    for (const QJsonObject &body : bodies("POST /1/visitors/1/surveys/7/history")) {
        const QJsonValue question = body["qid"_L1];
        history.append(body["action"_L1].toString() +
                       (question.isUndefined() ? QString() : u' ' + compact(question)));
    }
    history.sort();
    return history;
}

QList<QStringList> SurveyFixture::responses() {
    finish();
    QList<QStringList> responses;
    for (const QJsonObject &body : bodies("POST /2/environments/env/visitors/1/responses/submit")) {
        QStringList answers;
        for (const QJsonValue answer : body["responses"_L1].toArray())
            answers.append(compact(answer["questionId"_L1]) + u'=' + compact(answer["value"_L1]));
        responses.append(answers);
    }
    return responses;
}

} // namespace KestrioKit
