#include "host/ScriptLine.h"

#include "host/CommandTable.h"
#include "host/WordSplitter.h"

#include <QUtf8StringView>

using namespace Qt::StringLiterals;

namespace {

QStringList takeArguments(const Command &command, WordSplitter &words) {
    if (command.arity.restOfLine) {
        const QString rest = words.rest();
        return rest.isEmpty() ? QStringList() : QStringList(rest);
    }
    QStringList arguments;
    while (const std::optional<QString> word = words.next())
        arguments.append(*word);
    return arguments;
}

} // namespace

std::variant<ScriptLine, QString> parseScriptLine(const QByteArray &line) {
    if (!QUtf8StringView(line).isValidUtf8())
        return u"the line is not UTF-8"_s;
    WordSplitter words(QString::fromUtf8(line));
    const std::optional<QString> name = words.next();
    if (!words.error().isEmpty())
        return words.error();
    if (!name)
        return ScriptLine();
    const Command *const command = findCommand(*name);
    if (!command)
        return u"unknown command \"%1\""_s.arg(*name);
    const QStringList arguments = takeArguments(*command, words);
    if (!words.error().isEmpty())
        return words.error();
    const qsizetype count = arguments.size();
    if (count < command->arity.least || count > command->arity.most)
        return u"usage: %1 %2"_s.arg(command->name, command->usage).trimmed();
    return ScriptLine{command, arguments};
}
