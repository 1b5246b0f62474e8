#pragma once

#include <QLayout>

namespace KestrioKit {

/// A column in which each view keeps its own width, as far as there is room, and lies at the
/// leading edge.
class LeadingStack final : public QLayout {
    Q_OBJECT

public:
    explicit LeadingStack(int spacing);
    ~LeadingStack() override;

    /// Owns the layout from now on.
    void addLayout(QLayout *layout);

    void addItem(QLayoutItem *item) override { m_items.append(item); }
    int count() const override { return int(m_items.size()); }
    QLayoutItem *itemAt(int index) const override { return m_items.value(index); }
    QLayoutItem *takeAt(int index) override;
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;
    QSize sizeHint() const override;
    QSize minimumSize() const override { return {0, 0}; }
    void setGeometry(const QRect &rect) override;

private:
    QList<QLayoutItem *> m_items;
};

} // namespace KestrioKit
