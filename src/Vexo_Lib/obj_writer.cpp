#include <algorithm>

#include "Vexo_Lib/obj.h"
#include "base/number_group.h"
#include "base/number_text.h"
#include "base/output_file.h"

namespace talvek {

namespace {

char* putText(char* out, std::string_view text) {
    std::memcpy(out, text.data(), text.size());
    return out + text.size();
}

void writeComment(OutputFile& file, std::int32_t count, std::string_view what) {
    char* out = file.reserve(kNumberTextSize);
    out = putText(out, "# ");
    out = formatInteger(out, count);
    out = putText(out, what);
    file.commit(putText(out, system::kLineEnd));
}

void writeLine(OutputFile& file, std::string_view text) {
    file.write(text);
    file.write(system::kLineEnd);
}

char* formatFixed5(char* out, float value) {
    return formatFixed(out, static_cast<double>(value), 5);
}

char* formatFromOne(char* out, std::int32_t value) {
    return formatInteger(out, std::int64_t{value} + 1);
}

/// Writes a keyword and three numbers. `putNumber(out, i)` writes the i-th and a blank.
template <typename PutNumber>
char* putLine(char* out, std::string_view keyword, PutNumber putNumber) {
    out = putText(out, keyword);
    for (std::size_t i = 0; i < 3; ++i) {
        out = putNumber(out, i);
    }
    return putText(out - 1, system::kLineEnd);
}

template <auto format>
char* putEachAlone(char* out, std::string_view keyword, const auto* numbers) {
    return putLine(out, keyword, [numbers](char* at, std::size_t i) {
        at = format(at, numbers[i]);
        *at = ' ';
        return at + 1;
    });
}

/// Writes the `line`-th three numbers of a group.
template <auto put>
char* putFromGroup(char* out, std::string_view keyword, const NumberGroup& group, std::size_t line) {
    return putLine(out, keyword, [&group, line](char* at, std::size_t i) { return put(at, group, 3 * line + i); });
}

constexpr std::size_t kLinesPerGroup = NumberGroup::kSize / 3;

/// Writes the lines of up to kLinesPerGroup vertices. `normals` may be null.
char* putVertices(char* out, const float* positions, const float* normals, std::size_t count) {
    NumberGroup positionGroup;
    NumberGroup normalGroup;
    if (count == kLinesPerGroup && takeApart(positions, positionGroup) &&
        (normals == nullptr || takeApart(normals, normalGroup))) {
        for (std::size_t i = 0; i < kLinesPerGroup; ++i) {
            out = putFromGroup<putCoordinate>(out, "v ", positionGroup, i);
            if (normals != nullptr) {
                out = putFromGroup<putCoordinate>(out, "vn ", normalGroup, i);
            }
        }
        return out;
    }
    for (std::size_t i = 0; i < 3 * count; i += 3) {
        out = putEachAlone<formatFixed6>(out, "v ", positions + i);
        if (normals != nullptr) {
            out = putEachAlone<formatFixed6>(out, "vn ", normals + i);
        }
    }
    return out;
}

/// Writes the lines of up to kLinesPerGroup faces.
char* putFaces(char* out, const std::int32_t* corners, std::size_t count) {
    NumberGroup group;
    if (count == kLinesPerGroup && takeApart(corners, group)) {
        for (std::size_t i = 0; i < kLinesPerGroup; ++i) {
            out = putFromGroup<putIndex>(out, "f ", group, i);
        }
        return out;
    }
    for (std::size_t i = 0; i < 3 * count; i += 3) {
        out = putEachAlone<formatFromOne>(out, "f ", corners + i);
    }
    return out;
}

/// Writes `count` lines or pairs of lines. `putGroup(out, first, some)` writes up to kLinesPerGroup of them.
template <typename PutGroup>
void writeGroups(OutputFile& file, std::size_t count, PutGroup putGroup) {
    constexpr std::size_t kRoom = (2 * NumberGroup::kSize + 1) * kNumberTextSize;
    static_assert(kRoom <= OutputFile::kLargestReservation);
    for (std::size_t i = 0; i < count; i += kLinesPerGroup) {
        file.commit(putGroup(file.reserve(kRoom), i, std::min(kLinesPerGroup, count - i)));
    }
}

void writeFaces(OutputFile& file, const Object3D& mesh) {
    const std::span<const std::int32_t> corners = mesh.faceSpan();
    writeGroups(file, corners.size() / 3, [corners](char* out, std::size_t first, std::size_t count) {
        return putFaces(out, corners.data() + 3 * first, count);
    });
}

void writeVertices(OutputFile& file, const Object3D& mesh) {
    const std::span<const float> positions = mesh.vertexSpan();
    const float* normals = mesh.vertexNormals.get();
    writeGroups(file, positions.size() / 3, [positions, normals](char* out, std::size_t first, std::size_t count) {
        return putVertices(out, positions.data() + 3 * first, normals != nullptr ? normals + 3 * first : nullptr,
                           count);
    });
}

bool writeWithNormals(OutputFile& file, const Object3D& mesh) {
    const bool hasNormals = mesh.vertexNormals != nullptr;
    writeLine(file, "#");
    writeLine(file, "# Obj file created by QN Lib");
    writeLine(file, "#");
    writeComment(file, mesh.numVertices, " vertices");
    if (hasNormals) {
        writeComment(file, mesh.numVertices, " normals");
    }
    writeVertices(file, mesh);
    writeComment(file, mesh.numFaces, " triangles");
    writeFaces(file, mesh);
    return file.finish();
}

}  // namespace

bool WriteObjFile(const Object3D& mesh, const char* path) {
    OutputFile file(path);
    const std::span<const float> positions = mesh.vertexSpan();
    for (std::size_t i = 0; i < positions.size(); i += 3) {
        file.commit(putEachAlone<formatFixed5>(file.reserve(4 * kNumberTextSize), "v ", &positions[i]));
    }
    writeComment(file, mesh.numVertices, " vertices");
    writeFaces(file, mesh);
    writeComment(file, mesh.numFaces, " triangles");
    return file.finish();
}

bool WriteObjFileWithNormals(const Object3D& mesh, const char* path) {
    OutputFile file(path);
    return writeWithNormals(file, mesh);
}

bool writeObjFilesWithNormals(const Object3D& mesh, std::span<const std::string> paths) {
    OutputFile file(paths);
    return writeWithNormals(file, mesh);
}

}  // namespace talvek
