#include "host/ScriptLine.h"
#include "tests/fuzz/Fuzzing.h"

using namespace KestrioKit;
using namespace Qt::StringLiterals;

namespace {

/// The word as one that holds blanks and quotes is written.
QString quoted(QString word) {
    word.replace(u'\\', u"\\\\"_s).replace(u'"', u"\\\""_s).replace(u'\n', u"\\n"_s);
    return u'"' + word + u'"';
}

/// The same line, written otherwise.
QByteArray rewritten(const ScriptLine &line) {
    QString text = quoted(line.command->name);
    for (const QString &argument : line.arguments)
        text += u'\t' + (line.command->arity.restOfLine ? argument : quoted(argument));
    return text.toUtf8() + " \r";
}

void requireQuotable(const QString &word) {
    const auto parsed = parseScriptLine((u"track "_s + quoted(word)).toUtf8());
    const auto *const line = std::get_if<ScriptLine>(&parsed);
    require(line && line->arguments == QStringList(word), "any word can be quoted");
}

void requireUnderstood(const QByteArray &text) {
    const auto parsed = parseScriptLine(text);
    if (const auto *const error = std::get_if<QString>(&parsed)) {
        require(!error->isEmpty(), "an error has a description");
        return;
    }
    // A byte order mark is none of the text.
    require(text.endsWith(QString::fromUtf8(text).toUtf8()), "what is carried out is UTF-8");
    const auto &line = std::get<ScriptLine>(parsed);
    if (!line.command)
        return;
    const Arity &arity = line.command->arity;
    require(line.arguments.size() >= arity.least && line.arguments.size() <= arity.most,
            "a command has the arguments that it takes");
    const auto again = parseScriptLine(rewritten(line));
    require(std::holds_alternative<ScriptLine>(again) && std::get<ScriptLine>(again) == line,
            "words mean the same in quotes");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    for (const QByteArray &line : inputText(data, size).split('\n'))
        requireUnderstood(line);
    requireQuotable(QString::fromUtf8(inputText(data, size)));
    return 0;
}
