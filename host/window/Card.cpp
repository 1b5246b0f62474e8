#include "host/window/Card.h"

#include "host/window/DemoStyle.h"

#include <QLabel>
#include <QVBoxLayout>

namespace {

constexpr QMargins margins(16, 12, 16, 14);
constexpr int spacing = 8;

} // namespace

Card::Card(const QString &heading) : m_body(new QVBoxLayout(this)) {
    m_body->setContentsMargins(margins);
    m_body->setSpacing(spacing);
    m_body->addWidget(inLook(new QLabel(heading), Look::heading));
}
