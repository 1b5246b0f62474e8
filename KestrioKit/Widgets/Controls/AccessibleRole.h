#pragma once

#include "KestrioKit/SurveyTexts.h"

#include <QAccessible>
#include <QList>

class QWidget;

namespace KestrioKit {

/// Sets the role that assistive technology reports for `view`. The accessible name remains
/// `QWidget::accessibleName`. Call it on the main thread, like all functions of this file.
void setAccessibleRole(QWidget *view, QAccessible::Role role);

/// Makes `label` the accessible label of `view`. Assistive technology reads the name of `label`
/// before that of `view`. `label` must outlive `view`.
void setAccessibleLabel(QWidget *view, QWidget *label);

/// Gives adjacent buttons the role of radio buttons. The accessible description of each button
/// states its position, because Qt has no property for that. The descriptions of the first and the
/// last button also contain `firstLabel` and `lastLabel`.
void setRadioGroup(const QList<QWidget *> &buttons, const SurveyTexts &texts,
                   const QString &firstLabel = {}, const QString &lastLabel = {});

/// Makes a screen reader announce the accessible name of `view` now.
void announce(QWidget *view);

} // namespace KestrioKit
