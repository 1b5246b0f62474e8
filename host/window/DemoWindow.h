#pragma once

#include <QWidget>

/// The window of a shop that uses the library: an order form, and a panel from which every
/// operation can be called. It scrolls where there is no room for both.
class DemoWindow final : public QWidget {
    Q_OBJECT

public:
    DemoWindow();

private:
    QWidget *makePage();
};
