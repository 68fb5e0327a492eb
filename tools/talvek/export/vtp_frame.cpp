#include "talvek/export/vtp_frame.h"

#include <charconv>
#include <functional>
#include <nlohmann/json.hpp>

#include "talvek/export/binary_rows.h"
#include "talvek/export/export_failure.h"
#include "talvek/export/vertex_fields.h"

namespace talvek::host {

namespace {

std::string exactNumber(double value) {
    char digits[64];
    return {digits, std::to_chars(digits, digits + sizeof digits, value).ptr};
}

std::string xmlText(const std::string& text) {
    std::string escaped;
    for (const char c : text) {
        switch (c) {
            case '&':
                escaped += "&amp;";
                break;
            case '<':
                escaped += "&lt;";
                break;
            case '"':
                escaped += "&quot;";
                break;
            default:
                escaped += c;
        }
    }
    return escaped;
}

/// The arrays of a file: declared in its head, their bytes behind it.
class AppendedArrays {
  public:
    /// The element that declares an array of so many bytes; `write` writes them when their turn comes.
    std::string add(const std::string& attributes, std::uint64_t size, std::function<void(OutputFile&)> write) {
        const std::string offset = std::to_string(offset_);
        offset_ += sizeof size + size;
        arrays_.push_back({size, std::move(write)});
        return "<DataArray " + attributes + " format=\"appended\" offset=\"" + offset + "\"/>\n";
    }

    template <typename T>
    std::string add(const std::string& attributes, std::span<const T> values) {
        return add(attributes, values.size_bytes(), [values](OutputFile& file) { writeNumbers(file, values); });
    }

    void write(OutputFile& file) const {
        for (const Array& array : arrays_) {
            writeLong(file, array.size);
            array.write(file);
        }
    }

  private:
    struct Array {
        std::uint64_t size;
        std::function<void(OutputFile&)> write;
    };
    std::uint64_t offset_ = 0;
    std::vector<Array> arrays_;
};

std::string named(const std::string& type, const std::string& name) {
    return "type=\"" + type + "\" Name=\"" + name + "\"";
}

std::string pointData(const ExportFrame& frame, std::span<const ColourBytes> colours, AppendedArrays& arrays) {
    const std::string triple = " NumberOfComponents=\"3\"";
    std::string text = "<PointData Scalars=\"displacement_mm\" Normals=\"Normals\">\n";
    text += arrays.add(named("Float32", "Normals") + triple, frame.mesh->normalSpan());
    for (const VertexField& field : fieldsOf(frame)) {
        text += arrays.add(named("Float32", field.name), field.values);
    }
    if (!frame.minerals.empty()) {
        text += arrays.add(named("Int32", "mineral"), std::span<const std::int32_t>(frame.minerals));
    }
    if (!colours.empty()) {
        static_assert(sizeof(ColourBytes) == 3);
        text += arrays.add(named("UInt8", "colour") + triple, colours.size_bytes(),
                           [colours](OutputFile& file) { file.writeBytes(colours.data(), colours.size_bytes()); });
    }
    return text + "</PointData>\n";
}

std::string polygons(const Object3D& mesh, AppendedArrays& arrays) {
    const auto numFaces = static_cast<std::size_t>(mesh.numFaces);
    std::string text = "<Polys>\n" + arrays.add(named("Int32", "connectivity"), mesh.faceSpan());
    text += arrays.add(named("Int32", "offsets"), numFaces * sizeof(std::int32_t), [numFaces](OutputFile& file) {
        writeRows(file, numFaces, sizeof(std::int32_t), [](char* out, std::size_t face) {
            return toLittleEndian(out, static_cast<std::int32_t>(3 * (face + 1)));
        });
    });
    return text + "</Polys>\n";
}

std::string pieceStart(const Object3D& mesh) {
    return "<Piece NumberOfPoints=\"" + std::to_string(mesh.numVertices) +
           "\" NumberOfVerts=\"0\" NumberOfLines=\"0\" NumberOfStrips=\"0\" NumberOfPolys=\"" +
           std::to_string(mesh.numFaces) + "\">\n";
}

}  // namespace

void writeVtpFrame(const ExportFrame& frame, std::span<const ColourBytes> colours, double time,
                   const std::string& path) {
    AppendedArrays arrays;
    std::string head =
        "<?xml version=\"1.0\"?>\n<VTKFile type=\"PolyData\" version=\"1.0\" byte_order=\"LittleEndian\" "
        "header_type=\"UInt64\">\n<PolyData>\n<FieldData>\n<DataArray type=\"Float64\" Name=\"TimeValue\" "
        "NumberOfTuples=\"1\" format=\"ascii\">" +
        exactNumber(time) + "</DataArray>\n</FieldData>\n";
    head += pieceStart(*frame.mesh);
    head += pointData(frame, colours, arrays);
    const std::span<const float> positions = frame.mesh->vertexSpan();
    head +=
        "<Points>\n" + arrays.add(named("Float32", "Points") + " NumberOfComponents=\"3\"", positions) + "</Points>\n";
    head += polygons(*frame.mesh, arrays);
    head += "</Piece>\n</PolyData>\n<AppendedData encoding=\"raw\">\n_";
    OutputFile file(path.c_str());
    file.write(head);
    arrays.write(file);
    file.write("\n</AppendedData>\n</VTKFile>\n");
    finishExport(file, path);
}

void writePvd(const std::vector<TimedFile>& files, const std::string& path) {
    OutputFile file(path.c_str());
    file.write("<?xml version=\"1.0\"?>\n<VTKFile type=\"Collection\" version=\"0.1\">\n<Collection>\n");
    for (const TimedFile& timed : files) {
        file.write("<DataSet timestep=\"" + exactNumber(timed.time) + "\" part=\"0\" file=\"" + xmlText(timed.name) +
                   "\"/>\n");
    }
    file.write("</Collection>\n</VTKFile>\n");
    finishExport(file, path);
}

void writeVtpSeries(const std::vector<TimedFile>& files, const std::string& path) {
    nlohmann::ordered_json index = {{"file-series-version", "1.0"}, {"files", nlohmann::json::array()}};
    for (const TimedFile& timed : files) {
        index["files"].push_back({{"name", timed.name}, {"time", timed.time}});
    }
    OutputFile file(path.c_str());
    file.write(index.dump(1) + "\n");
    finishExport(file, path);
}

}  // namespace talvek::host
