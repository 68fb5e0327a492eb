#include "talvek/commands/command_set.h"

#include <CLI/CLI.hpp>
#include <utility>

namespace talvek::host {

CLI::App& CommandSet::add(const std::string& name, const std::string& description, Action action) {
    CLI::App* command = program_.add_subcommand(name, description);
    command->callback([this, action = std::move(action)] { chosen_ = action; });
    return *command;
}

CLI::App& CommandSet::addHidden(const std::string& name, Action action) {
    CLI::App& command = add(name, "", std::move(action));
    command.group("");
    return command;
}

void addFileArgument(CLI::App& command, std::string& name, const std::string& placeholder,
                     const std::string& description) {
    command.add_option(placeholder, name, description)->required()->type_name("");
}

}  // namespace talvek::host
