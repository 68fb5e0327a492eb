#include "Vexo_Lib/wrl.h"

#include <algorithm>
#include <string>

#include "Vexo_Lib/error_report.h"
#include "Vexo_Lib/wrl_lists.h"

namespace talvek {

namespace {

/// An array and its length, which need not be what the counts say.
template <typename T>
struct ListedArray {
    HeapArray<T> values;
    std::int64_t count = 0;

    void take(BlockList<T>& list) {
        count = list.count();
        values = list.takeArray();
    }

    void fillUp(std::int64_t wanted, T filler) {
        if (count >= wanted) {
            return;
        }
        HeapArray<T> longer = makeFilledArray(wanted, filler);
        std::copy_n(values.get(), count, longer.get());
        values = std::move(longer);
        count = wanted;
    }
};

/// Messages on their way out, written in large pieces: a file may give cause for a hundred thousand of them.
class Messages {
  public:
    explicit Messages(void (*write)(std::string_view)) : write_(write) {}
    Messages(const Messages&) = delete;
    Messages& operator=(const Messages&) = delete;
    ~Messages() { flush(); }

    void add(std::string_view text) {
        constexpr std::size_t kMostPending = 65536;
        if (pending_.size() + text.size() > kMostPending) {
            flush();
        }
        pending_ += text;
    }

    void flush() {
        if (!pending_.empty()) {
            write_(pending_);
            pending_.clear();
        }
    }

  private:
    void (*write_)(std::string_view);
    std::string pending_;
};

class WrlReader {
  public:
    explicit WrlReader(InputFile& file) : scanner_(file, kWrlSeparators), mesh_(std::make_unique<Object3D>()) {}

    void readNodes() {
        std::string_view token;
        while (scanner_.nextToken(token)) {
            readNode(token);
        }
        reports_.flush();
        output_.flush();
    }

    bool hasPolygons() const { return mesh_->numFaces > 0 && mesh_->numVertices > 0; }

    /// The line numbers are those of the file in which the report was first made; readers of reports know them.
    void reportContent(const char* path) const {
        reportLine({__FILE__, 479}, std::string("File information: ") + path);
        reportLine({__FILE__, 480}, texels_.values != nullptr ? "has texture array" : "NO TEXTURE ARRAY");
        reportLine({__FILE__, 481}, texelIndex_.values != nullptr ? "has texture index" : "NO TEXTURE INDEX");
        reportLine({__FILE__, 483}, positions_.values != nullptr ? "has vertex array" : "NO VERTEX ARRAY");
        reportLine({__FILE__, 484}, vertexIndex_.values != nullptr ? "has vertex index" : "NO VERTEX INDEX");
    }

    std::unique_ptr<Object3D> takeMesh() {
        positions_.fillUp(3 * std::int64_t{mesh_->numVertices}, 0);
        if (colours_.values != nullptr) {
            colours_.fillUp(3 * std::int64_t{mesh_->numVertices}, 0);
        }
        if (texelIndex_.values != nullptr) {
            texelIndex_.fillUp(3 * std::int64_t{mesh_->numFaces}, -1);
        }
        mesh_->vertices = std::move(positions_.values);
        mesh_->vertexColours = std::move(colours_.values);
        mesh_->texels = std::move(texels_.values);
        mesh_->vertexIndex = std::move(vertexIndex_.values);
        mesh_->texelIndex = std::move(texelIndex_.values);
        return std::move(mesh_);
    }

  private:
    void readNode(std::string_view name) {
        if (name == "Texture2" || name == "ImageTexture") {
            readTextureName();
        } else if (name == "TextureCoordinate2" || name == "TextureCoordinate") {
            readTexels();
        } else if (name == "Coordinate3" || name == "Coordinate") {
            if (!readVertexValues(positions_)) {
                complain(TALVEK_HERE, positionReport_,
                         "WRL ERROR: Number of vertices does not match number of vertex color values.");
            }
        } else if (name == "coordIndex") {
            readVertexIndex();
        } else if (name == "texCoordIndex") {
            readTexelIndex();
        } else if (name == "Color") {
            if (!readVertexValues(colours_)) {
                complain(TALVEK_HERE, colourReport_,
                         "WRL ERROR: Number of vertex color values does not match number of vertices.");
            }
        }
    }

    /// The token behind the field's name and one more, without its quotes.
    void readTextureName() {
        std::string_view token;
        for (int i = 0; i < 3; ++i) {
            if (!scanner_.nextToken(token)) {
                return;
            }
        }
        setText(mesh_->label, token.size() < 2 ? std::string_view() : token.substr(1, token.size() - 2));
    }

    void readTexels() {
        if (openWrlList(scanner_)) {
            BlockList<float> values;
            readWrlFloats(scanner_, 2, values);
            mesh_->numTexels = values.recordCount(2);
            texels_.take(values);
        }
    }

    /// The same report many times over is made once.
    void complain(const SourceSite& site, std::string& report, std::string_view message) {
        if (report.empty()) {
            report = errorReport(site, message, "");
        }
        reports_.add(report);
    }

    /// Positions or colours; whichever comes first tells how many vertices there are. False when the other does not
    /// agree.
    bool readVertexValues(ListedArray<float>& array) {
        if (!openWrlList(scanner_)) {
            return true;
        }
        BlockList<float> values;
        readWrlFloats(scanner_, 3, values);
        const std::int32_t count = values.recordCount(3);
        array.take(values);
        if (mesh_->numVertices == 0) {
            mesh_->numVertices = count;
        }
        return count == mesh_->numVertices;
    }

    void readVertexIndex() {
        if (openWrlList(scanner_)) {
            BlockList<std::int32_t> corners;
            readWrlTriangles(scanner_, corners);
            mesh_->numFaces = corners.recordCount(3);
            vertexIndex_.take(corners);
        }
    }

    void readTexelIndex() {
        if (!openWrlList(scanner_)) {
            return;
        }
        BlockList<std::int32_t> corners;
        readWrlTriangles(scanner_, corners);
        if (corners.recordCount(3) != mesh_->numFaces) {
            output_.add("WRL ERROR: Texture index has not equal size with vertex index!\n");
        }
        texelIndex_.take(corners);
    }

    TextScanner scanner_;
    Messages reports_{system::writeToStandardError};
    Messages output_{system::writeToStandardOutput};
    std::string positionReport_;
    std::string colourReport_;
    std::unique_ptr<Object3D> mesh_;
    ListedArray<float> positions_;
    ListedArray<float> colours_;
    ListedArray<float> texels_;
    ListedArray<std::int32_t> vertexIndex_;
    ListedArray<std::int32_t> texelIndex_;
};

}  // namespace

std::unique_ptr<Object3D> ReadWrlFile(const char* path, bool /*flag*/) try {
    InputFile file(path);
    if (!file.isOpen()) {
        reportError(TALVEK_HERE, "cannot open ", std::string(path) + " for reading ");
        return nullptr;
    }
    WrlReader reader(file);
    reader.readNodes();
    if (file.hasFailed()) {
        throw std::bad_alloc();
    }
    if (!reader.hasPolygons()) {
        reportError(TALVEK_HERE, "The file ", std::string(path) + " doesn't have polygons ");
        return nullptr;
    }
    reader.reportContent(path);
    return reader.takeMesh();
} catch (const std::bad_alloc&) {
    reportError(TALVEK_HERE, "damaged file ", path);
    return nullptr;
}

}  // namespace talvek
