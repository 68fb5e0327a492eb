#include "talvek/commands/command_line.h"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>
#include <new>
#include <string>
#include <vector>

#include "talvek.h"
#include "talvek/commands/check_command.h"
#include "talvek/commands/command_set.h"
#include "talvek/commands/compare_command.h"
#include "talvek/commands/convert_command.h"
#include "talvek/commands/export_command.h"
#include "talvek/commands/info_command.h"
#include "talvek/commands/picture_command.h"
#include "talvek/commands/results_command.h"
#include "talvek/commands/run_command.h"
#include "talvek/commands/view_command.h"
#include "talvek/support/exit_status.h"
#include "talvek/support/messages.h"
#include "talvek/watch/child_process.h"

namespace talvek::host {

namespace {

class Program {
  public:
    explicit Program(std::vector<std::string> arguments) : arguments_(std::move(arguments)) {
        app_.set_version_flag("--version", programVersion());
        app_.require_subcommand(0, 1);
        app_.footer(exitStatusTable() + "\ntalvek help COMMAND tells more of a command.");
        addRunCommands(commands_);
        addCheckCommand(commands_);
        addInfoCommand(commands_);
        addConvertCommand(commands_);
        addPictureCommand(commands_);
        addResultsCommand(commands_);
        addCompareCommand(commands_);
        addExportCommand(commands_);
        addViewCommand(commands_);
        addHelp();
    }

    int run() {
        try {
            app_.parse(std::vector<std::string>(arguments_.rbegin(), arguments_.rend()));
        } catch (const CLI::CallForHelp&) {
            return printHelp();
        } catch (const CLI::CallForVersion&) {
            std::printf("%s\n", programVersion().c_str());
            return kExitDone;
        } catch (const CLI::ParseError& error) {
            throw Failure(kExitUsage, std::string(error.what()) + "; talvek help tells what there is");
        }
        if (app_.get_subcommands().empty()) {
            throw Failure(kExitUsage, "what is to be done? talvek help tells what there is");
        }
        return commands_.chosen()();
    }

  private:
    void addHelp() {
        CLI::App& help = commands_.add("help", "Tell what there is", [this] { return printHelp(); });
        help.add_option("COMMAND", helpTopic_, "The command to tell more of")->type_name("");
    }

    /// `talvek help COMMAND` and `talvek COMMAND --help`, or without a command what there is.
    int printHelp() {
        const std::vector<CLI::App*> named = app_.get_subcommands();
        if (helpTopic_.empty() && !named.empty() && named[0]->get_name() != "help") {
            helpTopic_ = named[0]->get_name();
        }
        // Otherwise the help of the program as a whole would be that of the command it was called with.
        app_.clear();
        try {
            const CLI::App* topic = helpTopic_.empty() ? &app_ : app_.get_subcommand(helpTopic_);
            std::printf("%s", topic->help(helpTopic_.empty() ? "" : "talvek").c_str());
        } catch (const CLI::OptionNotFound&) {
            throw Failure(kExitUsage, "there is no command " + helpTopic_);
        }
        return kExitDone;
    }

    std::vector<std::string> arguments_;
    CLI::App app_{"Simulates how polluted air and rain change the surface of a stone.", "talvek"};
    CommandSet commands_{app_};
    std::string helpTopic_;
};

}  // namespace

int runProgram(int argc, char** argv) {
    try {
        reportFileSizeLimitAsError();
        return Program({argv + 1, argv + argc}).run();
    } catch (const Failure& failure) {
        printError(failure.what());
        return failure.status();
    } catch (const std::bad_alloc&) {
        printError("there is not enough memory");
        return kExitMesh;
    } catch (const std::exception& error) {
        printError(error.what());
        return kExitInternal;
    }
}

}  // namespace talvek::host
