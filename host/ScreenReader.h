#pragma once

#include <QAccessible>
#include <QStringList>

// What a screen reader is told. For the main thread.

/// The role in one lower-case word, such as "editabletext".
QString roleName(QAccessible::Role role);

/// Listens from now on.
void startScreenReader();

/// What was said since the last call.
QStringList takeSpoken();
