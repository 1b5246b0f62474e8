#pragma once

#include <QFrame>

class QVBoxLayout;

/// A white card with a heading and controls below one another.
class Card final : public QFrame {
    Q_OBJECT

public:
    explicit Card(const QString &heading);

    /// The layout below the heading, to which the card's controls are added.
    QVBoxLayout &body() { return *m_body; }

private:
    QVBoxLayout *m_body;
};
