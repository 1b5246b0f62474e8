#pragma once

#include <QFrame>

class QVBoxLayout;

/// A white sheet with a heading, on which controls that belong together lie one under the other.
class Card final : public QFrame {
    Q_OBJECT

public:
    explicit Card(const QString &heading);

    /// Where what belongs on it goes, under the heading.
    QVBoxLayout &body() { return *m_body; }

private:
    QVBoxLayout *m_body;
};
