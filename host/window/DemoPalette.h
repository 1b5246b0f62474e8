#pragma once

#include <QFont>
#include <QPalette>

// Colours and font of the whole program, whatever draws its windows.

QPalette demoPalette();

/// Requires the application object.
QFont demoFont();
