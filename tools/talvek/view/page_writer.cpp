#include "talvek/view/page_writer.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>

#include "base/output_file.h"
#include "talvek/support/exit_status.h"
#include "talvek/support/paths.h"
#include "talvek/view/block_text.h"
#include "talvek/view/coded_run.h"
#include "talvek/view/epoch_rows.h"
#include "talvek/view/markup.h"
#include "talvek/view/page_header.h"
#include "talvek/view/page_table.h"
#include "talvek/view/page_template.h"

namespace talvek::host {

namespace {

/// Parts begin where a group of three bytes does.
constexpr std::uint64_t kLargestPart = 48'000'000;

/// Three bytes are four characters in the page.
std::uint64_t textSize(std::uint64_t bytes) {
    return (bytes + 2) / 3 * 4;
}

/// Codes fewer and fewer surfaces until they fit.
CodedRun codeToFit(RunCoder& coder, const RunSeries& series, std::uint64_t room) {
    for (std::size_t step = 1;; step *= 2) {
        CodedRun run = coder.code(step);
        if (textSize(run.bytes()) <= room) {
            return run;
        }
        if (step >= series.surfaces().size()) {
            throw Failure(kExitOutput, "the page would have more than the " + std::to_string(room / 1000000) +
                                           " MB that are left for surfaces, even with the last epoch alone; make the "
                                           "mesh coarser, or allow a larger page with --largest");
        }
    }
}

/// In the browser's window and over the page.
constexpr int kTitles = 2;

std::string titleText(const RunSeries& series) {
    std::string title = pageText("title");
    const std::string_view place = "{mesh}";
    return title.replace(title.find(place), place.size(), pageTitle(series));
}

class PageFile {
  public:
    PageFile(const std::string& path, RunCoder& coder) : path_(path), coder_(coder), file_(path.c_str()) {}

    void write(std::string_view text) {
        file_.write(text);
        bytes_ += text.size();
    }

    /// Browsers give up on the text of very large elements, so a large block has several.
    void writeBlock(const StoredBlock& block) {
        for (std::uint64_t from = 0; from < block.piece.size; from += kLargestPart) {
            const std::uint64_t size = std::min(kLargestPart, block.piece.size - from);
            write("<script type=\"application/octet-stream\" class=\"block\">");
            write(base64Of(coder_.blocks().read({block.piece.offset + from, size})));
            write("</script>\n");
        }
    }

    std::uint64_t finish() {
        if (!file_.finish()) {
            throw Failure(kExitOutput,
                          path_ + ": the page cannot be written; look for the folder, its permissions and room");
        }
        return bytes_;
    }

  private:
    std::string path_;
    RunCoder& coder_;
    OutputFile file_;
    std::uint64_t bytes_ = 0;
};

}  // namespace

WrittenPage writePage(const RunSeries& series, const std::string& path, const PageOptions& options) {
    std::filesystem::path folder = pathOf(path).parent_path();
    folder = folder.empty() ? "." : folder;
    RunCoder coder(series, folder);
    const std::uint64_t shell = pageTemplate().size();
    const CodedRun run = codeToFit(coder, series, options.largestBytes - std::min(shell, options.largestBytes));
    const auto rows = epochRows(series, run);
    PageFile page(path, coder);
    std::string_view rest = pageTemplate();
    const auto writeUpTo = [&](std::string_view marker) {
        const auto [before, behind] = splitAt(rest, marker);
        page.write(before);
        rest = behind;
    };
    for (int each = 0; each < kTitles; ++each) {
        writeUpTo("<!--talvek:title-->");
        page.write(htmlText(titleText(series)));
    }
    writeUpTo("<!--talvek:table-->");
    page.write(epochTable(rows, scaleOf(run, palettes().front()).kind()));
    writeUpTo("<!--talvek:header-->");
    page.write(pageHeader(series, run, rows));
    writeUpTo("<!--talvek:blocks-->");
    page.writeBlock(run.faceBlock);
    if (run.mineralBlock) {
        page.writeBlock(*run.mineralBlock);
    }
    for (const StoredFrame& frame : run.frames) {
        page.writeBlock(frame.block);
    }
    writeUpTo("<!--talvek:texts\n");
    return {page.finish(), run.vertices, run.frames.size()};
}

}  // namespace talvek::host
