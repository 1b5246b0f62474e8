#pragma once

#include "host/HostWindow.h"

// The host programs share these functions. They differ in the kind of their window.

/// The exit code of a program that is called wrongly.
inline constexpr int wrongUsage = 2;

/// Writes the reason to standard error and returns `wrongUsage`.
int refuse(const QString &reason);

/// Returns whether a display is available. Without one, windows are drawn offscreen. Call it before
/// the application object exists.
bool findDisplay();

/// Runs a script or shows the window, as the command line says. Requires the application object.
/// Returns the program's exit code.
int runHost(bool hasDisplay, const HostWindowFactory &makeWindow);
