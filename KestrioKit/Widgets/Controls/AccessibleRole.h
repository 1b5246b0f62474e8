#pragma once

#include "KestrioKit/SurveyTexts.h"

#include <QAccessible>
#include <QList>

class QWidget;

namespace KestrioKit {

/// Tells assistive technology what a plain widget is for. Its name is `QWidget::accessibleName`.
void setAccessibleRole(QWidget *view, QAccessible::Role role);

/// Has assistive technology read the name of `label`, which must outlive `view`, before the view's.
void setAccessibleLabel(QWidget *view, QWidget *label);

/// Presents buttons that lie beside each other as radio buttons. Each one's description says which
/// of them it is, since Qt has no property for that; at the ends, also what their labels say.
void setRadioGroup(const QList<QWidget *> &buttons, const SurveyTexts &texts,
                   const QString &firstLabel = {}, const QString &lastLabel = {});

/// Has a screen reader say the view's name now.
void announce(QWidget *view);

} // namespace KestrioKit
