#include "talvek/commands/view_command.h"

#include <CLI/CLI.hpp>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <memory>

#include "talvek/results/run_series.h"
#include "talvek/support/exit_status.h"
#include "talvek/support/messages.h"
#include "talvek/support/paths.h"
#include "talvek/view/page_writer.h"

namespace talvek::host {

namespace {

constexpr std::uint64_t kBytesPerMegabyte = 1'000'000;
/// Telephones and tablets close pages that need more memory than they give them.
constexpr std::uint64_t kLargestForTelephones = 60 * kBytesPerMegabyte;

/// Beside the surfaces, called after the mesh that the user named.
std::string pageNameFor(const RunSeries& series) {
    const std::filesystem::path page = pathOf(series.source() + ".html").filename();
    return nameOf(pathOf(series.at(0).file).parent_path() / page);
}

}  // namespace

int viewRun(const ViewOptions& options) {
    const RunSeries series(options.run);
    const std::string path = options.output.empty() ? pageNameFor(series) : options.output;
    const WrittenPage page = writePage(series, path, {options.largestMegabytes * kBytesPerMegabyte});
    std::printf("%s: %s, %s of %s\n", path.c_str(), byteCount(static_cast<double>(page.bytes)).c_str(),
                countOf(page.surfaces, "surface").c_str(),
                countOf(static_cast<std::uint64_t>(page.vertices), "vertex").c_str());
    std::printf("open it in a browser: it needs no other file and no network\n");
    if (page.surfaces < series.surfaces().size()) {
        printWarning("the page shows " + std::to_string(page.surfaces - 1) + " of " +
                     countOf(series.surfaces().size() - 1, "epoch") + "; with all of them it would be larger than " +
                     std::to_string(options.largestMegabytes) + " MB");
    }
    if (page.bytes > kLargestForTelephones) {
        printWarning("telephones and tablets may not open a page of " + byteCount(static_cast<double>(page.bytes)) +
                     "; --largest 60 leaves epochs out until it has no more than 60 MB");
    }
    return kExitDone;
}

void addViewCommand(CommandSet& commands) {
    const auto options = std::make_shared<ViewOptions>();
    CLI::App& view =
        commands.add("view", "Show a run as one page that any browser opens", [options] { return viewRun(*options); });
    addFileArgument(view, options->run, "MESH",
                    "Mesh that was weathered, as talvek run was given it, or the record of the run");
    view.add_option("-o,--output", options->output, "Page to write (default: the mesh's name and .html)")
        ->type_name("FILE");
    view.add_option("--largest", options->largestMegabytes,
                    "Megabytes that the page may have; epochs are left out for it (default 500)")
        ->check(CLI::Range(1, 500))
        ->type_name("MB");
}

}  // namespace talvek::host
