#pragma once

#include <QByteArray>
#include <QString>

#include <ostream>

// How a failing test shows Qt's texts: as texts, not as lists of characters.

inline void PrintTo(const QString &text, std::ostream *out) {
    *out << '"' << qPrintable(text) << '"';
}

inline void PrintTo(const QByteArray &text, std::ostream *out) {
    *out << '"' << text.constData() << '"';
}
