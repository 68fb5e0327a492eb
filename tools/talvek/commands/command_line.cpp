#include "talvek/commands/command_line.h"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>
#include <new>
#include <string>
#include <vector>

#include "talvek.h"
#include "talvek/commands/check_command.h"
#include "talvek/commands/convert_command.h"
#include "talvek/commands/info_command.h"
#include "talvek/commands/run_command.h"
#include "talvek/engine/host_session.h"
#include "talvek/plan/run_options.h"
#include "talvek/support/exit_status.h"
#include "talvek/support/messages.h"
#include "talvek/watch/child_process.h"

namespace talvek::host {

namespace {

std::string versionText() {
    return "talvek " + std::to_string(TALVEK_VERSION_MAJOR) + "." + std::to_string(TALVEK_VERSION_MINOR) + "." +
           std::to_string(TALVEK_VERSION_PATCH);
}

class Program {
  public:
    explicit Program(std::vector<std::string> arguments) : arguments_(std::move(arguments)) {
        app_.set_version_flag("--version", versionText());
        app_.require_subcommand(0, 1);
        app_.footer(exitStatusTable() + "\ntalvek help COMMAND tells more of a command.");
        addRunCommands();
        addCheck();
        addInfo();
        addConvert();
        addHelp();
    }

    int run() {
        try {
            app_.parse(std::vector<std::string>(arguments_.rbegin(), arguments_.rend()));
        } catch (const CLI::CallForHelp&) {
            return printHelp();
        } catch (const CLI::CallForVersion&) {
            std::printf("%s\n", versionText().c_str());
            return kExitDone;
        } catch (const CLI::ParseError& error) {
            throw Failure(kExitUsage, std::string(error.what()) + "; talvek help tells what there is");
        }
        if (app_.get_subcommands().empty()) {
            throw Failure(kExitUsage, "what is to be done? talvek help tells what there is");
        }
        return action_();
    }

  private:
    CLI::App* addCommand(const char* name, const char* description, const std::function<int()>& action) {
        CLI::App* command = app_.add_subcommand(name, description);
        command->callback([this, action] { action_ = action; });
        return command;
    }

    void addRunCommands() {
        CLI::App* run = addCommand("run", "Weather a mesh, one frame for every epoch", [this] {
            return runCommand(options_, {arguments_.begin() + 1, arguments_.end()});
        });
        addRunArguments(*run, options_);
        addHidden(kDescribeCommand, describeSession);
        addHidden(kSessionCommand, runSession);
    }

    void addHidden(const char* name, int (*action)(const RunOptions&)) {
        CLI::App* command = addCommand(name, "", [this, action] { return action(options_); });
        command->group("");
        addRunArguments(*command, options_);
    }

    void addCheck() {
        CLI::App* check = addCommand("check", "Tell why a mesh does not load or will not weather well",
                                     [this] { return checkCommand(mesh_); });
        addMesh(*check, mesh_, "MESH", "Mesh to look through: .obj, .wrl, .sas, .bin, .fim or .ply");
    }

    void addInfo() {
        CLI::App* info =
            addCommand("info", "Tell what a mesh consists of", [this] { return infoCommand(mesh_, asJson_); });
        addMesh(*info, mesh_, "MESH", "Mesh to look at: .obj, .wrl, .sas, .bin, .fim or .ply");
        info->add_flag("--json", asJson_, "Print one JSON object");
    }

    void addConvert() {
        CLI::App* convert = addCommand("convert", "Turn a mesh into another format: OBJ, SAS or PLY",
                                       [this] { return convertCommand(mesh_, target_); });
        addMesh(*convert, mesh_, "A", "Mesh to read: .obj, .wrl, .sas, .bin, .fim or .ply");
        addMesh(*convert, target_, "B", "Mesh to write: .obj, .sas or .ply");
    }

    static void addMesh(CLI::App& command, std::string& name, const char* placeholder, const char* description) {
        command.add_option(placeholder, name, description)->required()->type_name("");
    }

    void addHelp() {
        CLI::App* help = addCommand("help", "Tell what there is", [this] { return printHelp(); });
        help->add_option("COMMAND", helpTopic_, "The command to tell more of")->type_name("");
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
    RunOptions options_;
    std::string mesh_;
    std::string target_;
    bool asJson_ = false;
    std::string helpTopic_;
    std::function<int()> action_;
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
