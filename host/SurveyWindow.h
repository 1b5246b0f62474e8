#pragma once

#include "KestrioKit/Core/Platform/JSON/JSONWriter.h"

#include <QPoint>
#include <QString>

#include <optional>

class QWidget;

// What is on screen, as a person or an automation sees it. For the main thread.

/// The survey that is up; null when none is.
QWidget *surveyOnScreen();

/// The view in `window` with that accessibility identifier that can be seen; null when there is
/// none.
QWidget *visibleView(const QWidget &window, const QString &identifier);

/// Whether nothing of the survey moves, fades or grows.
bool surveyIsStill();

/// Writes a view with all that is on it; its frame is in the window's coordinates.
void writeTree(KestrioKit::JSONWriter &json, const QWidget &view);
