#pragma once

#include <QAccessible>
#include <QStringList>

// Records what a screen reader would announce. All functions are for the main thread.

/// Returns the role as one lower-case word, such as "editabletext".
QString roleName(QAccessible::Role role);

/// Starts recording announcements.
void startScreenReader();

/// Returns the announcements since the last call and forgets them.
QStringList takeSpoken();
