#include "KestrioKit/Platform/Storage.h"
#include "KestrioKit/Queue/PersistentQueue.h"
#include "KestrioKit/Survey/Survey.h"

#include <benchmark/benchmark.h>

#include <QFile>
#include <QJsonDocument>
#include <QSaveFile>

using namespace KestrioKit;
using namespace Qt::StringLiterals;

namespace {

constexpr int recordsOfAKind = 25;
constexpr qint64 maximumSize = 1 << 30;

/// About 3 KB.
QByteArray surveyText() {
    QByteArray questions;
    for (int name = 1; name <= 8; ++name)
        questions += (name > 1 ? "," : "") +
                     QByteArray(R"({"name":%,"type":"multiplechoice","props":{"message":)"
                                R"("How likely are you to recommend our shop to a friend?",)"
                                R"("options":[{"id":1,"label":"A friend told me","value":"f"},)"
                                R"({"id":2,"label":"A search engine","value":"s"},)"
                                R"({"id":3,"label":"Somewhere else","value":"o"}],)"
                                R"("routingOptions":[{"comparator":"eq","value":"2","target":3},)"
                                R"({"comparator":"answered","value":0,"target":1}]}})")
                         .replace('%', QByteArray::number(name));
    return R"({"unitId":1,"vid":7,"surveyId":3,"responseGroupUid":"G","locale":"en","questions":[)" +
           questions + "]}";
}

/// As many records as the state file ever holds.
PersistentQueue fullState() {
    PersistentQueue state;
    state.visitorIdentifier = 7;
    state.visitorToken = u"22C51FA0-2C5F-4383-8F83-3E82F7502192"_s;
    for (int index = 0; index < recordsOfAKind; ++index) {
        Request::TrackEvent event;
        event.event = u"Catalogue Opened"_s;
        state.events.append(event);
        Request::SurveyResponse response;
        response.body.responses.append(
            {.questionId = index,
             .value = CodableDynamicType::stringValue(u"The quick delivery"_s),
             .seenAt = 1.5,
             .answeredAt = 2.5,
             .questionType = {}});
        state.surveys.append(response);
        state.errors.append(Request::RecordError{});
        state.history.append(Request::SurveyEvent{});
        Request::UpdateAttribute attribute;
        attribute.key = u"plan"_s;
        attribute.value = u"pro"_s;
        state.attributes.append(attribute);
    }
    return state;
}

QString file() {
    Storage::setUp();
    return *Storage::localLibraryURL("SubmissionQueue"_L1);
}

void decodeSurvey(benchmark::State &state) {
    const QByteArray text = surveyText();
    for ([[maybe_unused]] auto iteration : state)
        benchmark::DoNotOptimize(decodeJSON<Survey>(text));
    state.counters["bytes"] = double(text.size());
}
BENCHMARK(decodeSurvey)->Unit(benchmark::kMicrosecond);

void parseSurvey(benchmark::State &state) {
    const QByteArray text = surveyText();
    for ([[maybe_unused]] auto iteration : state)
        benchmark::DoNotOptimize(QJsonDocument::fromJson(text));
}
BENCHMARK(parseSurvey)->Unit(benchmark::kMicrosecond);

void encodeState(benchmark::State &state) {
    const PersistentQueue queue = fullState();
    for ([[maybe_unused]] auto iteration : state)
        benchmark::DoNotOptimize(encodeJSON(queue));
    state.counters["bytes"] = double(encodeJSON(queue).size());
}
BENCHMARK(encodeState)->Unit(benchmark::kMicrosecond);

void writeStateAsText(benchmark::State &state) {
    const QString text = QString::fromUtf8(encodeJSON(fullState()));
    for ([[maybe_unused]] auto iteration : state) {
        JSONWriter writer;
        writer.string(text);
        benchmark::DoNotOptimize(writer.text());
    }
}
BENCHMARK(writeStateAsText)->Unit(benchmark::kMicrosecond);

void saveState(benchmark::State &state) {
    const std::optional queue = fullState();
    const std::optional url = file();
    for ([[maybe_unused]] auto iteration : state)
        Storage::store(queue, url);
}
BENCHMARK(saveState)->Unit(benchmark::kMicrosecond);

void writeFileAtomically(benchmark::State &state) {
    const QByteArray text = encodeJSON(fullState());
    const QString name = file();
    for ([[maybe_unused]] auto iteration : state) {
        QSaveFile target(name);
        if (!target.open(QIODevice::WriteOnly) || target.write(text) != text.size() ||
            !target.commit())
            state.SkipWithError("the file cannot be written");
    }
}
BENCHMARK(writeFileAtomically)->Unit(benchmark::kMicrosecond);

void loadState(benchmark::State &state) {
    const std::optional url = file();
    Storage::store(std::optional(fullState()), url);
    for ([[maybe_unused]] auto iteration : state)
        benchmark::DoNotOptimize(Storage::load<PersistentQueue>(url, maximumSize));
}
BENCHMARK(loadState)->Unit(benchmark::kMicrosecond);

void readAndParseState(benchmark::State &state) {
    const QString name = file();
    Storage::store(std::optional(fullState()), std::optional(name));
    for ([[maybe_unused]] auto iteration : state) {
        QFile source(name);
        if (!source.open(QIODevice::ReadOnly))
            state.SkipWithError("the file cannot be read");
        benchmark::DoNotOptimize(QJsonDocument::fromJson(source.readAll()));
    }
}
BENCHMARK(readAndParseState)->Unit(benchmark::kMicrosecond);

} // namespace
