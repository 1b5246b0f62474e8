#pragma once

#include "host/Command.h"

#include <span>

/// Commands that call the library's public operations.
std::span<const Command> facadeCommands();
/// Commands for the survey that the library holds.
std::span<const Command> surveyCommands();
/// Commands for the host's window and for surveys over it.
std::span<const Command> windowCommands();
/// Commands that simulate mouse and keyboard input.
std::span<const Command> inputCommands();
/// Commands that report what a user or a screen reader perceives.
std::span<const Command> inspectionCommands();
/// Commands that wait, and the one that quits.
std::span<const Command> flowCommands();

/// Returns the command of that name; null if there is none.
const Command *findCommand(const QString &name);
