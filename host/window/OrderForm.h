#pragma once

#include <QWidget>

class QCheckBox;
class QGridLayout;
class QLabel;
class QRadioButton;
class QSpinBox;

/// What somebody orders, where it goes, and what it costs.
class OrderForm final : public QWidget {
    Q_OBJECT

public:
    OrderForm();

Q_SIGNALS:
    void orderPlaced();

private:
    QWidget *makeBasket();
    QWidget *makeAddress();
    QWidget *makeDelivery();
    QWidget *makeFooter();
    void addItem(QGridLayout &grid, int row);
    int totalCents() const;
    void updateTotal();

    QList<QSpinBox *> m_amounts;
    QList<QRadioButton *> m_deliveries;
    QCheckBox *m_giftWrapping = nullptr;
    QLabel *m_total = nullptr;
};
