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

void requireUnderstood(const QByteArray &text) {
    const auto parsed = parseScriptLine(text);
    const auto *const line = std::get_if<ScriptLine>(&parsed);
    require(line || !std::get<QString>(parsed).isEmpty(), "an error has a description");
    if (!line || !line->command)
        return;
    const Arity &arity = line->command->arity;
    require(line->arguments.size() >= arity.least && line->arguments.size() <= arity.most,
            "a command has the arguments that it takes");
    require(parseScriptLine(rewritten(*line)) == parsed, "words mean the same in quotes");
}

} // namespace

void tryInput(const QByteArray &input) {
    for (const QByteArray &line : input.split('\n'))
        requireUnderstood(line);
}
