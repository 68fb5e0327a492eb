// How a subcommand joins the program's command line.
#pragma once

#include <functional>
#include <string>

namespace CLI {  // NOLINT(readability-identifier-naming): the name that the library gave it
class App;
}

namespace talvek::host {

/// The subcommands of the program. Each command's file adds its own.
class CommandSet {
  public:
    /// Runs the command and returns the program's exit status; throws Failure.
    using Action = std::function<int()>;

    explicit CommandSet(CLI::App& program) : program_(program) {}

    /// Adds a subcommand. `action` runs when the command line names it and all its arguments have been read.
    CLI::App& add(const std::string& name, const std::string& description, Action action);

    /// Adds one that the program only calls itself with: the help does not list it.
    CLI::App& addHidden(const std::string& name, Action action);

    /// What the command line has named; empty before it was read or when it names nothing.
    const Action& chosen() const { return chosen_; }

  private:
    CLI::App& program_;
    Action chosen_;
};

/// Adds a required argument that names a file.
void addFileArgument(CLI::App& command, std::string& name, const std::string& placeholder,
                     const std::string& description);

}  // namespace talvek::host
