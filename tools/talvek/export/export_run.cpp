#include "talvek/export/export_run.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "mesh/texture.h"
#include "talvek/export/export_failure.h"
#include "talvek/export/frame_reader.h"
#include "talvek/export/gltf_animation.h"
#include "talvek/export/numpy_archive.h"
#include "talvek/export/obj_surface.h"
#include "talvek/export/ply_frame.h"
#include "talvek/export/point_cache.h"
#include "talvek/export/scan_texture.h"
#include "talvek/export/vertex_fields.h"
#include "talvek/export/vtp_frame.h"
#include "talvek/formats/mesh_file.h"
#include "talvek/results/figure_table.h"
#include "talvek/support/paths.h"
#include "talvek/support/same_file.h"

namespace talvek::host {

namespace {

namespace fs = std::filesystem;

constexpr double kDaysOfYear = 365;

/// What every writer needs to know.
struct Job {
    const RunSeries& series;
    const ExportRequest& request;
    ExportReport report;

    double timeOf(const SeriesSurface& surface) const {
        return request.inYears ? surface.days / kDaysOfYear : surface.days;
    }
    /// Throws Failure for a name that stands for one of the run's own files.
    std::string checked(const std::string& path) const {
        std::vector<std::string> inputs = {series.source(), series.mesh(), series.mineralMap()};
        std::ranges::transform(series.surfaces(), std::back_inserter(inputs), &SeriesSurface::file);
        for (const std::string& input : inputs) {
            if (!input.empty() && isSameFile(path, input)) {
                throw Failure(kExitUsage, path + ": this is a file of the run itself; choose another name");
            }
        }
        return path;
    }
};

using SurfaceWriter = void (*)(const Job& job, const ExportFrame& frame, std::span<const ColourBytes> colours,
                               const std::string& path);

void writePlyOf(const Job&, const ExportFrame& frame, std::span<const ColourBytes> colours, const std::string& path) {
    writePlyFrame(frame, colours, path);
}

void writeVtpOf(const Job& job, const ExportFrame& frame, std::span<const ColourBytes> colours,
                const std::string& path) {
    writeVtpFrame(frame, colours, job.timeOf(frame.surface), path);
}

std::string stemOf(const RunSeries& series) {
    return nameOf(pathOf(series.source()).stem());
}

/// stone_0003.ply, with as many digits as the last one needs.
std::string surfaceName(const RunSeries& series, const SeriesSurface& surface, const std::string& extension) {
    const std::size_t digits = std::max<std::size_t>(4, std::to_string(series.surfaces().back().epoch).size());
    const std::string number = std::to_string(surface.epoch);
    return stemOf(series) + "_" + std::string(digits - std::min(digits, number.size()), '0') + number + extension;
}

void writeSurfaces(Job& job, const std::vector<SeriesSurface>& surfaces, SurfaceWriter write,
                   const std::vector<std::string>& paths) {
    FrameReader reader(job.series);
    std::optional<ChangeScale> scale;
    if (job.request.wantsColours) {
        scale = scaleOf(job.series, job.request.palette);
    }
    for (std::size_t i = 0; i < surfaces.size(); ++i) {
        const ExportFrame& frame = reader.read(surfaces[i]);
        const std::vector<ColourBytes> colours =
            scale ? coloursOf(frame.displacements, *scale) : std::vector<ColourBytes>();
        write(job, frame, colours, job.checked(paths[i]));
        job.report.files.push_back(paths[i]);
    }
    if (readTexturedMesh(job.series, reader.first()) != nullptr) {
        job.report.notCarried.emplace_back("the texture coordinates (obj and glb have them)");
    }
}

void writeOneSurface(Job& job, SurfaceWriter write) {
    const SeriesSurface& last = job.series.surfaces().back();
    writeSurfaces(job, {job.request.epoch ? job.series.at(*job.request.epoch) : last}, write, {job.request.target});
    if (job.series.surfaces().size() > 1) {
        job.report.notCarried.emplace_back("the other epochs (a folder holds all of them)");
    }
}

void writeFolder(Job& job, const std::string& extension, SurfaceWriter write) {
    std::vector<std::string> paths;
    std::vector<TimedFile> index;
    for (const SeriesSurface& surface : job.series.surfaces()) {
        const std::string name = surfaceName(job.series, surface, extension);
        paths.push_back(fileIn(job.request.target, name));
        index.push_back({job.timeOf(surface), name});
    }
    writeSurfaces(job, job.series.surfaces(), write, paths);
    if (extension == ".vtp") {
        const std::string pvd = fileIn(job.request.target, "run.pvd");
        const std::string series = fileIn(job.request.target, "run.vtp.series");
        writePvd(index, pvd);
        writeVtpSeries(index, series);
        job.report.files.insert(job.report.files.end(), {pvd, series});
    }
}

void writeGltf(Job& job, const std::string& path) {
    const GltfReport done =
        writeGltfAnimation(job.series, {job.request.upAxis, job.request.wantsColours, job.request.palette}, path);
    job.report.files.push_back(path);
    job.report.notCarried.emplace_back("curvature, minerals and the displacements as numbers (ply and vtp have them)");
    const std::size_t epochs = job.series.surfaces().size() - 1;
    if (done.keyFrames < epochs) {
        job.report.notCarried.push_back(std::to_string(epochs - done.keyFrames) + " of " + std::to_string(epochs) +
                                        " epochs, between which the file goes evenly (pc2 has all)");
    }
    if (done.hasPicture) {
        job.report.notCarried.emplace_back(
            "the colours of the change, in whose place the scan's picture stands "
            "(--colours takes them)");
    }
}

void writePc2(Job& job, const std::string& path) {
    writePointCache(job.series, path);
    job.report.files.push_back(path);
    job.report.notCarried.push_back("everything but positions: lay it on " + job.series.at(0).file +
                                    ", whose vertices it moves, with that file's vertex order kept");
}

void writeObj(Job& job, const std::string& path) {
    const SeriesSurface& last = job.series.surfaces().back();
    const std::vector<std::string> files =
        writeObjSurface(job.series, job.request.epoch ? job.series.at(*job.request.epoch) : last, path);
    job.report.files.insert(job.report.files.end(), files.begin(), files.end());
    job.report.notCarried.emplace_back("displacements and the other epochs");
    if (files.size() == 1) {
        job.report.notCarried.emplace_back("a picture: the source names none that can be read");
    }
}

void writeCsv(Job& job, const std::string& path) {
    OutputFile file(path.c_str());
    file.write(csvOf(measureEpochs(job.series)));
    finishExport(file, path);
    job.report.files.push_back(path);
    job.report.notCarried.emplace_back("the single vertices (npz has them)");
}

void writeNpz(Job& job, const std::string& path) {
    writeNumpyArchive(job.series, path);
    job.report.files.push_back(path);
    job.report.notCarried.emplace_back("positions and faces (ply and vtp have them)");
}

struct ExportFormat {
    const char* extension;
    /// One file for each surface, or one for the run.
    SurfaceWriter writeSurface;
    void (*writeRun)(Job& job, const std::string& path);
};

constexpr ExportFormat kFormats[] = {{".ply", writePlyOf, nullptr}, {".vtp", writeVtpOf, nullptr},
                                     {".glb", nullptr, writeGltf},  {".pc2", nullptr, writePc2},
                                     {".obj", nullptr, writeObj},   {".csv", nullptr, writeCsv},
                                     {".npz", nullptr, writeNpz}};

const ExportFormat* formatOf(const std::string& extension) {
    const auto found =
        std::ranges::find_if(kFormats, [&](const ExportFormat& format) { return extension == format.extension; });
    return found != std::end(kFormats) ? found : nullptr;
}

const ExportFormat& requireFormat(const ExportRequest& request, bool isFile) {
    const std::string extension = isFile ? lowerCaseExtension(request.target) : ".ply";
    const std::string wanted = request.format.empty() ? extension : "." + request.format;
    const ExportFormat* const format = formatOf(wanted);
    if (format == nullptr) {
        throw Failure(kExitUsage, request.format + ": runs are exported as " + exportFormats());
    }
    if (isFile && wanted != extension) {
        throw Failure(kExitUsage, request.target + ": the name says " + extension.substr(1) + " and --format says " +
                                      request.format);
    }
    return *format;
}

void makeFolder(const std::string& folder) {
    std::error_code failed;
    fs::create_directories(pathOf(folder), failed);
    if (failed || !fs::is_directory(pathOf(folder), failed)) {
        throw Failure(kExitOutput, folder + ": the folder cannot be made; look for its name and permissions");
    }
}

}  // namespace

std::string exportFormats() {
    std::string text;
    for (const ExportFormat& format : kFormats) {
        text += (text.empty() ? "" : ", ") + std::string(format.extension + 1);
    }
    return text;
}

ExportReport exportRun(const RunSeries& series, const ExportRequest& request) {
    Job job{series, request, {}};
    std::error_code ignored;
    const bool isFile =
        formatOf(lowerCaseExtension(request.target)) != nullptr && !fs::is_directory(pathOf(request.target), ignored);
    const ExportFormat& format = requireFormat(request, isFile);
    if (!isFile) {
        makeFolder(request.target);
    }
    if (format.writeSurface != nullptr) {
        isFile ? writeOneSurface(job, format.writeSurface) : writeFolder(job, format.extension, format.writeSurface);
    } else {
        const fs::path inFolder = pathOf(request.target) / pathOf(stemOf(series) + format.extension);
        format.writeRun(job, job.checked(isFile ? request.target : nameOf(inFolder)));
    }
    return job.report;
}

}  // namespace talvek::host
