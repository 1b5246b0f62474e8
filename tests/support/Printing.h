#pragma once

#include <QByteArray>
#include <QString>

#include <ostream>

// Failing tests print Qt's texts as texts instead of lists of characters.

inline void PrintTo(const QString &text, std::ostream *out) {
    *out << '"' << qPrintable(text) << '"';
}

inline void PrintTo(const QByteArray &text, std::ostream *out) {
    *out << '"' << text.constData() << '"';
}
