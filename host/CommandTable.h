#pragma once

#include "host/Command.h"

#include <span>

/// The library's public operations.
std::span<const Command> facadeCommands();
/// What is done with the survey that the library holds.
std::span<const Command> surveyCommands();
/// Waiting and leaving.
std::span<const Command> flowCommands();

/// The command of that name; null when there is none.
const Command *findCommand(const QString &name);
