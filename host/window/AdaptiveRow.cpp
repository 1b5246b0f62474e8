#include "host/window/AdaptiveRow.h"

#include <QBoxLayout>

#include <algorithm>

AdaptiveRow::AdaptiveRow(int wideWidth, int spacing)
    : m_wideWidth(wideWidth), m_layout(new QBoxLayout(QBoxLayout::TopToBottom, this)) {
    m_layout->setContentsMargins({});
    m_layout->setSpacing(spacing);
}

void AdaptiveRow::addWidget(QWidget *view, int stretch) {
    m_layout->addWidget(view, stretch);
}

QSize AdaptiveRow::minimumSizeHint() const {
    int width = 0;
    for (int index = 0; index < m_layout->count(); ++index)
        width = std::max(width, m_layout->itemAt(index)->minimumSize().width());
    return {width, m_layout->minimumSize().height()};
}

void AdaptiveRow::resizeEvent(QResizeEvent *) {
    m_layout->setDirection(width() >= m_wideWidth ? QBoxLayout::LeftToRight
                                                  : QBoxLayout::TopToBottom);
}
