#pragma once

#include "KestrioKit/Core/Survey/Labels.h"

#include <QAccessible>
#include <QList>

class QWidget;

namespace KestrioKit {

/// Tells assistive technology what a plain widget is for. Its name is `QWidget::accessibleName`.
void setAccessibleRole(QWidget *view, QAccessible::Role role);

/// Has assistive technology read the name of `label`, which must outlive `view`, before the view's.
void setAccessibleLabel(QWidget *view, QWidget *label);

/// Presents buttons that lie beside each other as radio buttons. Each one's description says which
/// of them it is, since Qt has no property for that; at the ends, also what `ends` says.
void setRadioGroup(const QList<QWidget *> &buttons, const Labels &ends = {});

/// The text for one of several, in the language of the survey: "2 of 5". Both count from 1.
QString positionText(qsizetype position, qsizetype count);

/// Has a screen reader say the view's name now.
void announce(QWidget *view);

} // namespace KestrioKit
