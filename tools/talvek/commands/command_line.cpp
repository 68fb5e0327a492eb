#include "talvek/commands/command_line.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <exception>
#include <new>
#include <string>
#include <vector>

#include "base/system.h"
#include "talvek/commands/check_command.h"
#include "talvek/commands/clean_command.h"
#include "talvek/commands/command_set.h"
#include "talvek/commands/compare_command.h"
#include "talvek/commands/convert_command.h"
#include "talvek/commands/export_command.h"
#include "talvek/commands/info_command.h"
#include "talvek/commands/picture_command.h"
#include "talvek/commands/rates_command.h"
#include "talvek/commands/results_command.h"
#include "talvek/commands/run_command.h"
#include "talvek/commands/verify_command.h"
#include "talvek/commands/view_command.h"
#include "talvek/support/exit_status.h"
#include "talvek/support/messages.h"
#include "talvek/support/nearest_name.h"
#include "talvek/watch/child_process.h"

namespace talvek::host {

namespace {

class Program {
  public:
    explicit Program(std::vector<std::string> arguments) : arguments_(std::move(arguments)) {
        app_.set_version_flag("--version", programVersion());
        app_.require_subcommand(0, 1);
        addRunCommands(commands_);
        addCheckCommand(commands_);
        addInfoCommand(commands_);
        addConvertCommand(commands_);
        addCleanCommand(commands_);
        addPictureCommand(commands_);
        addResultsCommand(commands_);
        addCompareCommand(commands_);
        addExportCommand(commands_);
        addViewCommand(commands_);
        addRatesCommand(commands_);
        addVerifyCommand(commands_);
        addHelp();
        // Subcommands that are added later would take it over.
        app_.footer(exitStatusTable() + "\ntalvek help COMMAND tells more of a command.");
        takeMeshForRun();
    }

    int run() {
        try {
            app_.parse(std::vector<std::string>(arguments_.rbegin(), arguments_.rend()));
        } catch (const CLI::CallForHelp&) {
            return printHelp();
        } catch (const CLI::CallForVersion&) {
            std::printf("%s\n", programVersion().c_str());
            return kExitDone;
        } catch (const CLI::ExtrasError&) {
            refuseExtras();
        } catch (const CLI::ParseError& error) {
            throw Failure(kExitUsage, std::string(error.what()) + "; talvek help tells what there is");
        }
        if (app_.get_subcommands().empty()) {
            throw Failure(kExitUsage, "what is to be done? talvek help tells what there is");
        }
        return commands_.chosen()();
    }

  private:
    /// A mesh alone, as a desktop gives one that was dropped on the program, is to be run.
    void takeMeshForRun() {
        if (arguments_.size() != 1 || arguments_[0].starts_with("-") || isCommand(arguments_[0])) {
            return;
        }
        if (system::kindOf(arguments_[0].c_str()) == system::FileKind::kRegular) {
            arguments_.insert(arguments_.begin(), "run");
        }
    }

    std::vector<std::string> commandNames() const {
        std::vector<std::string> names;
        for (const CLI::App* const command : app_.get_subcommands([](const CLI::App*) { return true; })) {
            names.push_back(command->get_name());
        }
        return names;
    }

    bool isCommand(const std::string& word) const {
        const std::vector<std::string> names = commandNames();
        return std::ranges::find(names, word) != names.end();
    }

    /// What nothing on the command line takes, in the order given, and what the first of it may have been meant to be.
    [[noreturn]] void refuseExtras() const {
        const std::vector<std::string> extras = app_.remaining(true);
        const std::vector<CLI::App*> chosen = app_.get_subcommands();
        std::vector<std::string> known = chosen.empty() ? commandNames() : std::vector<std::string>();
        if (!chosen.empty()) {
            for (const CLI::Option* const option : chosen[0]->get_options()) {
                known.push_back(option->get_name());
            }
        }
        std::string words;
        for (const std::string& extra : extras) {
            words += (words.empty() ? "" : " ") + extra;
        }
        const std::string first = extras.empty() ? "" : extras[0].substr(0, extras[0].find('='));
        throw Failure(kExitUsage, (chosen.empty() ? "there is no command " : "not expected: ") + words +
                                      didYouMean(nearestName(first, known)) + "; talvek help" +
                                      (chosen.empty() ? "" : " " + chosen[0]->get_name()) + " tells what there is");
    }

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
            throw Failure(kExitUsage,
                          "there is no command " + helpTopic_ + didYouMean(nearestName(helpTopic_, commandNames())));
        }
        return kExitDone;
    }

    std::vector<std::string> arguments_;
    CLI::App app_{"Simulates how polluted air and rain change the surface of a stone.", "talvek"};
    CommandSet commands_{app_};
    std::string helpTopic_;
};

/// What was printed may still be on its way to a full disk or a closed pipe.
int statusAfterOutput(int status) {
    const bool isWritten = std::fflush(stdout) == 0 && std::ferror(stdout) == 0;
    if (!isWritten && (status == kExitDone || status == kExitFindings)) {
        printError("standard output cannot be written; look for room on the disk");
        return kExitOutput;
    }
    return status;
}

}  // namespace

int runProgram(int argc, char** argv) {
    try {
        reportFileSizeLimitAsError();
        return statusAfterOutput(Program({argv + 1, argv + argc}).run());
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
