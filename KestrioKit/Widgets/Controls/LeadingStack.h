#pragma once

#include <QLayout>

namespace KestrioKit {

/// A column layout that aligns its items at the leading edge. Each item keeps its preferred width,
/// as far as the column is wide enough. Use it on the main thread only.
class LeadingStack final : public QLayout {
    Q_OBJECT

public:
    /// `spacing` is the distance between items in device-independent pixels.
    explicit LeadingStack(int spacing);
    ~LeadingStack() override;

    /// Appends `layout` and takes ownership of it.
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
