#pragma once

#include "host/Command.h"

#include <span>

/// The library's public operations.
std::span<const Command> facadeCommands();
/// What is done with the survey that the library holds.
std::span<const Command> surveyCommands();
/// The host's window, and surveys over it.
std::span<const Command> windowCommands();
/// What a person does at the window.
std::span<const Command> inputCommands();
/// What a person, or a screen reader, finds there.
std::span<const Command> inspectionCommands();
/// Waiting and leaving.
std::span<const Command> flowCommands();

/// The command of that name; null when there is none.
const Command *findCommand(const QString &name);
