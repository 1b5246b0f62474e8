#include "host/WordSplitter.h"
#include "tests/support/Programs.h"

#include <gtest/gtest.h>

#include <QStringList>
#include <QTemporaryDir>

using namespace KestrioKit;
using namespace Qt::StringLiterals;

namespace {

/// The line's words; "!" for a line that is wrong, after the words before that.
QStringList wordsOf(const QString &line) {
    WordSplitter splitter(line);
    QStringList words;
    while (const std::optional<QString> word = splitter.next())
        words.append(*word);
    if (!splitter.error().isEmpty())
        words.append(u"!"_s);
    return words;
}

TEST(WordSplitter, splitsAtBlanksGroupsByQuotesAndLeavesCommentsOut) {
    const QList<std::pair<QString, QStringList>> lines{
        {u""_s, {}},
        {u" \t \r"_s, {}},
        {u"track  Cart\tLeft\r"_s, {u"track"_s, u"Cart"_s, u"Left"_s}},
        {u"track \"Cart Left\""_s, {u"track"_s, u"Cart Left"_s}},
        {u"a \"\" b"_s, {u"a"_s, u""_s, u"b"_s}},
        {u"pre\"a b\"post"_s, {u"prea bpost"_s}},
        {uR"("\"q\" \\ \n")"_s, {u"\"q\" \\ \n"_s}},
        {uR"(C:\new)"_s, {uR"(C:\new)"_s}},
        {u"# all of it"_s, {}},
        {u"a #b \"c"_s, {u"a"_s}},
        {u"a#b \"#c\""_s, {u"a#b"_s, u"#c"_s}},
        {u"\u00e9t\u00e9 \U0001F600"_s, {u"\u00e9t\u00e9"_s, u"\U0001F600"_s}},
        {u"a \"b"_s, {u"a"_s, u"!"_s}},
        {u"a \"b\\"_s, {u"a"_s, u"!"_s}},
        {u"a \"b\\t\" c"_s, {u"a"_s, u"!"_s}},
    };
    for (const auto &[line, words] : lines)
        EXPECT_EQ(wordsOf(line), words) << qPrintable(line);
}

TEST(WordSplitter, givesTheRestOfTheLineAsItStands) {
    WordSplitter splitter(u" answer  [\"a \\u00e9\", {\"#\": true}] "_s);
    splitter.next();
    EXPECT_EQ(splitter.rest(), u"[\"a \\u00e9\", {\"#\": true}]"_s);
}

TEST(HostScript, endsAtTheFirstLineThatFailsAndSaysWhich) {
    const QList<std::pair<QByteArray, int>> scripts{
        {"# first\n\nno-such-command", 3},
        {"visitor\nvisitor now", 2},
        {"configure", 1},
        {"attributes plan", 1},
        {"attributes plan pro seats", 1},
        {"track \"Cart", 1},
        {"track \xff", 1},
        {"network maybe", 1},
        {"perform setDisableNetworkAccess: maybe", 1},
        {"answer", 1},
        {"answer [1]", 1},
        {"close", 1},
        {"wait -1", 1},
        {"wait-for sun 10", 1},
        {"wait-for visitor soon", 1},
        {"wait 1\nwait-for visitor 20\nvisitor", 2},
        {"quit 256", 1},
    };
    const QTemporaryDir data;
    for (const auto &[script, line] : scripts) {
        HostProgram host(data.path());
        host.send(script + "\nquit 0");
        EXPECT_EQ(host.finish(), 1) << script.toStdString();
        ASSERT_FALSE(host.reports().isEmpty()) << script.toStdString();
        const QJsonObject error = host.reports().last();
        EXPECT_EQ(error[u"line"_s].toInt(), line) << script.toStdString();
        EXPECT_FALSE(error[u"error"_s].toString().isEmpty()) << script.toStdString();
    }
}

TEST(HostScript, isObeyedLineByLineAsItArrives) {
    const QTemporaryDir data;
    HostProgram host(data.path());
    host.send("visitor");
    EXPECT_EQ(host.nextReport(), (QJsonObject{{u"visitor"_s, QJsonValue::Null}}));
    host.send("ask Early\nwait-for asked 5000\nsurvey");
    EXPECT_EQ(host.nextReport(),
              (QJsonObject{{u"ask"_s, u"Early"_s}, {u"state"_s, u"disabled"_s}}));
    EXPECT_EQ(host.nextReport(), (QJsonObject{{u"survey"_s, QJsonValue::Null}}));
    host.send("quit 7\nvisitor");
    EXPECT_EQ(host.program().waitForEnd(), 7);
    EXPECT_EQ(host.reports().size(), 3);
    EXPECT_EQ(host.logLines().size(), 1) << "the library says that it is not configured";
}

TEST(HostScript, thatCannotBeReadIsRefusedInOneLine) {
    const QTemporaryDir data;
    for (const QStringList &arguments : {QStringList{},
                                         {u"--script"_s},
                                         {u"--script"_s, data.filePath(u"none"_s)},
                                         {u"--script"_s, data.path()},
                                         {u"--script"_s, u"-"_s, u"more"_s},
                                         {u"--sript"_s}}) {
        RunningProgram host(hostProgramFile(), arguments);
        EXPECT_EQ(host.waitForEnd(), 2) << qPrintable(arguments.join(u' '));
        EXPECT_TRUE(host.output().isEmpty());
        EXPECT_EQ(host.errors().count("kestrio-host: "), 1) << host.errors().toStdString();
    }
}

} // namespace
