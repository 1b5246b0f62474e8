#include "host/window/OrderForm.h"

#include "host/window/AdaptiveRow.h"
#include "host/window/Card.h"
#include "host/window/DemoStyle.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>

#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr int spacing = 12;
constexpr int itemSpacing = 16;
/// The width in pixels from which the address and the delivery are side by side.
constexpr int wideWidth = 600;
constexpr int mostOfOneItem = 20;
constexpr int amountWidth = 64;
constexpr int giftWrappingCents = 250;
constexpr int centsPerEuro = 100;

struct Item {
    QLatin1StringView name;
    QLatin1StringView description;
    int cents;
    int amount;
};

constexpr std::array items{
    Item{"Coffee, whole beans"_L1, "1 kg, roasted on Monday"_L1, 1890, 1},
    Item{"Oat biscuits"_L1, "Tin of 24"_L1, 740, 2},
    Item{"Blackberry jam"_L1, "From the valley"_L1, 520, 0},
    Item{"Rye bread"_L1, "Sliced"_L1, 430, 1},
    Item{"Olive oil"_L1, "First pressing, 0.5 l"_L1, 1250, 0},
};

struct Delivery {
    QLatin1StringView name;
    int cents;
};

constexpr std::array deliveries{
    Delivery{"Collect in the shop"_L1, 0},
    Delivery{"By post, 2 days"_L1, 490},
    Delivery{"By bicycle, today"_L1, 890},
};

QString price(int cents) {
    return QLocale(QLocale::English).toCurrencyString(double(cents) / centsPerEuro, u"€"_s);
}

QString withPrice(const QString &name, int cents) {
    return u"%1 (%2)"_s.arg(name, cents > 0 ? price(cents) : u"free"_s);
}

} // namespace

OrderForm::OrderForm() {
    auto *const column = new QVBoxLayout(this);
    column->setContentsMargins({});
    column->setSpacing(spacing);
    column->addWidget(makeBasket());
    auto *const row = new AdaptiveRow(wideWidth, spacing);
    row->addWidget(makeAddress(), 1);
    row->addWidget(makeDelivery(), 1);
    column->addWidget(row);
    column->addWidget(makeFooter());
    column->addStretch();
    updateTotal();
}

QWidget *OrderForm::makeBasket() {
    auto *const card = new Card(u"Your basket"_s);
    auto *const grid = new QGridLayout;
    grid->setHorizontalSpacing(spacing);
    grid->setVerticalSpacing(itemSpacing);
    grid->setColumnStretch(0, 1);
    for (int row = 0; row < int(items.size()); ++row)
        addItem(*grid, row);
    card->body().addLayout(grid);
    return card;
}

void OrderForm::addItem(QGridLayout &grid, int row) {
    const Item &item = items.at(std::size_t(row));
    auto *const texts = new QVBoxLayout;
    texts->setSpacing(0);
    texts->addWidget(new QLabel(item.name));
    texts->addWidget(inLook(new QLabel(item.description), Look::quiet));
    auto *const amount = named(new QSpinBox, item.name);
    amount->setRange(0, mostOfOneItem);
    amount->setValue(item.amount);
    amount->setFixedWidth(amountWidth);
    connect(amount, &QSpinBox::valueChanged, this, &OrderForm::updateTotal);
    m_amounts.append(amount);
    grid.addLayout(texts, row, 0);
    grid.addWidget(new QLabel(price(item.cents)), row, 1, Qt::AlignRight);
    grid.addWidget(amount, row, 2);
}

QWidget *OrderForm::makeAddress() {
    auto *const card = new Card(u"Address"_s);
    for (const QString &name :
         {u"Name"_s, u"Street and number"_s, u"Postcode and town"_s, u"Telephone"_s}) {
        auto *const field = named(new QLineEdit, name);
        field->setPlaceholderText(name);
        card->body().addWidget(field);
    }
    card->body().addStretch();
    return card;
}

QWidget *OrderForm::makeDelivery() {
    auto *const card = new Card(u"Delivery"_s);
    for (const Delivery &delivery : deliveries) {
        auto *const choice =
            named(new QRadioButton(withPrice(delivery.name, delivery.cents)), delivery.name);
        connect(choice, &QRadioButton::toggled, this, &OrderForm::updateTotal);
        m_deliveries.append(choice);
        card->body().addWidget(choice);
    }
    m_deliveries.first()->setChecked(true);
    const QString giftWrapping = u"Gift wrapping"_s;
    m_giftWrapping = named(new QCheckBox(withPrice(giftWrapping, giftWrappingCents)), giftWrapping);
    connect(m_giftWrapping, &QCheckBox::toggled, this, &OrderForm::updateTotal);
    card->body().addWidget(m_giftWrapping);
    auto *const voucher = named(new QLineEdit, u"Voucher"_s);
    voucher->setPlaceholderText(u"Voucher"_s);
    card->body().addWidget(voucher);
    card->body().addStretch();
    return card;
}

QWidget *OrderForm::makeFooter() {
    auto *const footer = new QWidget;
    auto *const row = new QHBoxLayout(footer);
    row->setContentsMargins({});
    m_total = inLook(new QLabel, Look::total);
    m_total->setObjectName(u"Total"_s);
    auto *const button =
        named(inLook(new QPushButton(u"&Place order"_s), Look::primary), u"Place order"_s);
    connect(button, &QPushButton::clicked, this, &OrderForm::orderPlaced);
    row->addWidget(m_total, 1);
    row->addWidget(button);
    return footer;
}

int OrderForm::totalCents() const {
    int cents = m_giftWrapping->isChecked() ? giftWrappingCents : 0;
    for (std::size_t row = 0; row < items.size(); ++row)
        cents += items.at(row).cents * m_amounts.at(qsizetype(row))->value();
    for (std::size_t row = 0; row < deliveries.size(); ++row)
        cents += m_deliveries.at(qsizetype(row))->isChecked() ? deliveries.at(row).cents : 0;
    return cents;
}

// The controls signal their initial values before all of them exist.
void OrderForm::updateTotal() {
    if (m_total)
        m_total->setText(u"Total %1"_s.arg(price(totalCents())));
}
