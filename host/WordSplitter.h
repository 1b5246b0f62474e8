#pragma once

#include <QString>

#include <optional>

/// Takes the words off a line, one by one.
///
///     WordSplitter splitter(u"track \"Cart \\\"A\\\" left\"  # a comment"_s);
///     splitter.next(); // track
///     splitter.next(); // Cart "A" left
///     splitter.next(); // nothing
///
/// Blanks (space, tab, carriage return) part words. Double quotes group, anywhere in a word, and
/// within them \" \\ and \n stand for a quote, a backslash and a line feed. "#" at the start of a
/// word starts a comment, which goes to the end of the line.
class WordSplitter {
public:
    explicit WordSplitter(QString line) : m_line(std::move(line)) {}

    /// The next word; absent at the end of the line and where the line is wrong.
    std::optional<QString> next();

    /// What is behind the words taken so far, as it stands, without the blanks around it.
    QString rest() const { return m_line.mid(m_position).trimmed(); }

    /// What is wrong with the line; empty while nothing is.
    const QString &error() const { return m_error; }

private:
    bool atEnd() const { return m_position == m_line.size(); }
    void skipBlanks();
    bool takeQuoted(QString &word);
    bool takeEscape(QString &word);

    QString m_line;
    qsizetype m_position = 0;
    QString m_error;
};
