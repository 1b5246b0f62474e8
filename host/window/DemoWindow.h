#pragma once

#include <QWidget>

/// The window of a shop that uses the library. It shows an order form, and a panel that calls every
/// operation. The content scrolls if the window is too small for both.
class DemoWindow final : public QWidget {
    Q_OBJECT

public:
    DemoWindow();

private:
    QWidget *makePage();
};
