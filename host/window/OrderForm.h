#pragma once

#include <QWidget>

class QCheckBox;
class QGridLayout;
class QLabel;
class QRadioButton;
class QSpinBox;

/// A form for an order: items, address, delivery and the total price.
class OrderForm final : public QWidget {
    Q_OBJECT

public:
    OrderForm();

Q_SIGNALS:
    /// Emitted when the user places the order.
    void orderPlaced();

private:
    QWidget *makeBasket();
    QWidget *makeAddress();
    QWidget *makeDelivery();
    QWidget *makeFooter();
    void addItem(QGridLayout &grid, int row);
    /// Returns the total price in cents.
    int totalCents() const;
    void updateTotal();

    QList<QSpinBox *> m_amounts;
    QList<QRadioButton *> m_deliveries;
    QCheckBox *m_giftWrapping = nullptr;
    QLabel *m_total = nullptr;
};
