#include "host/CommandTable.h"

#include <algorithm>

const Command *findCommand(const QString &name) {
    for (const std::span<const Command> group :
         {facadeCommands(), surveyCommands(), windowCommands(), inputCommands(),
          inspectionCommands(), flowCommands()}) {
        const auto found = std::ranges::find(group, name, &Command::name);
        if (found != group.end())
            return &*found;
    }
    return nullptr;
}
