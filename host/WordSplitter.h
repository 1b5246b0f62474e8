#pragma once

#include <QString>

#include <optional>

/// Splits a line into words, one at a time.
///
///     WordSplitter splitter(u"track \"Cart \\\"A\\\" left\"  # a comment"_s);
///     splitter.next(); // track
///     splitter.next(); // Cart "A" left
///     splitter.next(); // nothing
///
/// Blanks (space, tab, carriage return) separate words. Double quotes group characters anywhere in
/// a word. Within them, \" \\ and \n stand for a quote, a backslash and a line feed. A "#" at the
/// start of a word starts a comment that extends to the end of the line.
class WordSplitter {
public:
    explicit WordSplitter(QString line) : m_line(std::move(line)) {}

    /// Returns the next word; absent at the end of the line and where the line is invalid.
    std::optional<QString> next();

    /// Returns the unsplit rest of the line after the words so far, without surrounding blanks.
    QString rest() const { return m_line.mid(m_position).trimmed(); }

    /// Describes what is invalid about the line; empty while the line is valid.
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
