#pragma once

#include "KestrioKit/Core/Platform/JSON/JSONWriter.h"

#include <QPoint>
#include <QString>

#include <optional>

class QWidget;

// What is on screen, as a user or an automation sees it. All functions are for the main thread.

/// Returns the survey on screen; null if there is none.
QWidget *surveyOnScreen();

/// Returns the visible view in `window` with that accessibility identifier; null if there is none.
QWidget *visibleView(const QWidget &window, const QString &identifier);

/// Returns whether a survey is on screen and no part of it is being animated.
bool surveyIsStill();

/// Writes a view and all views on it as JSON. Frames are in the window's coordinates.
void writeTree(KestrioKit::JSONWriter &json, const QWidget &view);
