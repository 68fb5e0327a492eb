#include "talvek/formats/obj_export.h"

#include <charconv>

#include "base/output_file.h"
#include "mesh/texture.h"

namespace talvek::host {

namespace {

/// A line, put together from a keyword and numbers.
class Line {
  public:
    explicit Line(OutputFile& file) : file_(file) {}

    Line& text(std::string_view keyword) {
        text_ += keyword;
        return *this;
    }

    /// As few digits as give the same number when they are read.
    template <typename Number>
    Line& number(Number value) {
        char digits[64];
        text_.append(digits, std::to_chars(digits, digits + sizeof digits, value).ptr);
        return *this;
    }

    void end() {
        text_ += system::kLineEnd;
        file_.write(text_);
        text_.clear();
    }

  private:
    OutputFile& file_;
    std::string text_;
};

void writeRecords(OutputFile& file, std::string_view keyword, const float* values, std::int32_t count,
                  std::size_t width) {
    Line line(file);
    for (std::size_t i = 0; i < static_cast<std::size_t>(count); ++i) {
        line.text(keyword);
        for (std::size_t k = 0; k < width; ++k) {
            line.text(" ").number(values[width * i + k]);
        }
        line.end();
    }
}

void writeFaces(OutputFile& file, const Object3D& mesh, const std::int32_t* texelIndex) {
    Line line(file);
    for (std::size_t i = 0; i < mesh.faceSpan().size(); ++i) {
        line.text(i % 3 == 0 ? "f " : " ").number(std::int64_t{mesh.vertexIndex[i]} + 1);
        if (texelIndex != nullptr && texelIndex[i] >= 0) {
            line.text("/").number(std::int64_t{texelIndex[i]} + 1);
        }
        if (i % 3 == 2) {
            line.end();
        }
    }
}

}  // namespace

bool writeObjExport(const Object3D& mesh, const std::string& path) {
    OutputFile file(path.c_str());
    writeRecords(file, "v", mesh.vertices.get(), mesh.numVertices, 3);
    if (hasTexels(mesh)) {
        writeRecords(file, "vt", mesh.texels.get(), mesh.numTexels, 2);
    }
    writeFaces(file, mesh, hasTexels(mesh) ? cornerTexels(mesh) : nullptr);
    return file.finish();
}

}  // namespace talvek::host
