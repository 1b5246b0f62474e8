#include "host/WordSplitter.h"

using namespace Qt::StringLiterals;

namespace {

constexpr QChar quote = u'"';
constexpr QChar escape = u'\\';
constexpr QChar comment = u'#';

bool isBlank(QChar character) {
    return character == u' ' || character == u'\t' || character == u'\r';
}

} // namespace

std::optional<QString> WordSplitter::next() {
    skipBlanks();
    if (atEnd())
        return std::nullopt;
    if (m_line.at(m_position) == comment) {
        m_position = m_line.size();
        return std::nullopt;
    }
    QString word;
    while (!atEnd() && !isBlank(m_line.at(m_position))) {
        const QChar character = m_line.at(m_position++);
        if (character != quote)
            word += character;
        else if (!takeQuoted(word))
            return std::nullopt;
    }
    return word;
}

void WordSplitter::skipBlanks() {
    while (!atEnd() && isBlank(m_line.at(m_position)))
        ++m_position;
}

bool WordSplitter::takeQuoted(QString &word) {
    while (!atEnd()) {
        const QChar character = m_line.at(m_position++);
        if (character == quote)
            return true;
        if (character != escape)
            word += character;
        else if (!takeEscape(word))
            return false;
    }
    m_error = u"a quote is not closed"_s;
    return false;
}

bool WordSplitter::takeEscape(QString &word) {
    if (atEnd()) {
        m_error = u"a quote is not closed"_s;
        return false;
    }
    const QChar character = m_line.at(m_position++);
    if (character == quote || character == escape) {
        word += character;
    } else if (character == u'n') {
        word += u'\n';
    } else {
        m_error = u"unknown escape \\%1"_s.arg(character);
        return false;
    }
    return true;
}
