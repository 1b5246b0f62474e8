#include "benchmarks/FullState.h"

#include "KestrioKit/Core/Platform/HTTP/URLSession.h"
#include "KestrioKit/Core/Platform/Storage.h"
#include "KestrioKit/Core/Survey/Survey.h"

#include <benchmark/benchmark.h>

#include <QFile>
#include <QJsonDocument>

using namespace KestrioKit;
using namespace Qt::StringLiterals;

namespace {

constexpr qint64 maximumSize = 1 << 30;
constexpr int repetitions = 5;
constexpr qint64 usualSurvey = 3000; // bytes
constexpr qint64 largestSurvey = URLTransport::maximumBodySize;

constexpr auto forBothLimits = [](auto *registered) {
    registered->Arg(defaultLimit)->Arg(largestLimit);
};
constexpr auto forBothSizes = [](auto *registered) {
    registered->Arg(usualSurvey)->Arg(largestSurvey);
};
constexpr auto repeated = [](auto *registered) {
    registered->Unit(benchmark::kMicrosecond)->Repetitions(repetitions)->ReportAggregatesOnly();
};

/// Returns a survey of as many questions as fit in `size` bytes.
QByteArray surveyText(qint64 size) {
    const QByteArray start =
        R"({"unitId":1,"vid":7,"surveyId":3,"responseGroupUid":"G","locale":"en","questions":[)";
    const QByteArray end = "]}";
    QByteArray questions;
    for (int name = 1;; ++name) {
        const QByteArray question =
            QByteArray(R"({"name":%,"type":"multiplechoice","props":{"message":)"
                       R"("How likely are you to recommend our shop to a friend?",)"
                       R"("options":[{"id":1,"label":"A friend told me","value":"f"},)"
                       R"({"id":2,"label":"A search engine","value":"s"},)"
                       R"({"id":3,"label":"Somewhere else","value":"o"}],)"
                       R"("routingOptions":[{"comparator":"eq","value":"2","target":3},)"
                       R"({"comparator":"answered","value":0,"target":1}]}})")
                .replace('%', QByteArray::number(name));
        const qsizetype left = size - start.size() - end.size() - questions.size();
        if (question.size() + 1 > left)
            return start + questions + end;
        questions += (name > 1 ? "," : "") + question;
    }
}

QString file() {
    Storage::setUp();
    return *Storage::localLibraryURL("SubmissionQueue"_L1);
}

void decodeSurvey(benchmark::State &state) {
    const QByteArray text = surveyText(state.range(0));
    for ([[maybe_unused]] auto iteration : state)
        benchmark::DoNotOptimize(decodeJSON<Survey>(text));
    state.counters["bytes"] = double(text.size());
}
BENCHMARK(decodeSurvey)->Apply(repeated)->Apply(forBothSizes);

void parseSurvey(benchmark::State &state) {
    const QByteArray text = surveyText(state.range(0));
    for ([[maybe_unused]] auto iteration : state)
        benchmark::DoNotOptimize(QJsonDocument::fromJson(text));
}
BENCHMARK(parseSurvey)->Apply(repeated)->Apply(forBothSizes);

void encodeState(benchmark::State &state) {
    const PersistentQueue queue = fullState(state.range(0));
    for ([[maybe_unused]] auto iteration : state)
        benchmark::DoNotOptimize(encodeJSON(queue));
    state.counters["bytes"] = double(encodeJSON(queue).size());
}
BENCHMARK(encodeState)->Apply(repeated)->Apply(forBothLimits);

void writeStateAsText(benchmark::State &state) {
    // The text has no quotes, which the writer would escape, so input and output have the same
    // size.
    const QString text =
        QString::fromUtf8(encodeJSON(fullState(state.range(0)))).replace(u'"', u' ');
    for ([[maybe_unused]] auto iteration : state) {
        JSONWriter writer;
        writer.string(text);
        benchmark::DoNotOptimize(writer.text());
    }
}
BENCHMARK(writeStateAsText)->Apply(repeated)->Apply(forBothLimits);

void loadState(benchmark::State &state) {
    const std::optional url = file();
    Storage::store(std::optional(fullState(state.range(0))), url);
    for ([[maybe_unused]] auto iteration : state)
        benchmark::DoNotOptimize(Storage::load<PersistentQueue>(url, maximumSize));
}
BENCHMARK(loadState)->Apply(repeated)->Apply(forBothLimits);

void readAndParseState(benchmark::State &state) {
    const QString name = file();
    Storage::store(std::optional(fullState(state.range(0))), std::optional(name));
    for ([[maybe_unused]] auto iteration : state) {
        QFile source(name);
        if (!source.open(QIODevice::ReadOnly))
            state.SkipWithError("the file cannot be read");
        benchmark::DoNotOptimize(QJsonDocument::fromJson(source.readAll()));
    }
}
BENCHMARK(readAndParseState)->Apply(repeated)->Apply(forBothLimits);

} // namespace
