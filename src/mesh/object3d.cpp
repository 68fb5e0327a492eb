#include "mesh/object3d.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace talvek {

namespace {

/// The length of a text field that may fill its block without a terminator.
std::size_t fieldLength(const char* field) {
    return static_cast<std::size_t>(std::find(field, field + Object3D::kTextSize, '\0') - field);
}

void appendWhatFits(char* field, std::string_view text) {
    const std::size_t length = fieldLength(field);
    if (length < Object3D::kTextSize) {
        const std::size_t kept = std::min(text.size(), Object3D::kTextSize - 1 - length);
        text.copy(field + length, kept);
        field[length + kept] = '\0';
    }
}

}  // namespace

bool hasOnlyExistingVertices(const Object3D& mesh) {
    const auto count = static_cast<std::uint32_t>(mesh.numVertices);
    return std::ranges::all_of(mesh.faceSpan(),
                               [count](std::int32_t vertex) { return static_cast<std::uint32_t>(vertex) < count; });
}

void setText(char (&field)[Object3D::kTextSize], std::string_view text) {
    std::memset(field, 0, sizeof field);
    appendWhatFits(field, text);
}

std::unique_ptr<Object3D> cloneMesh(const Object3D& mesh) {
    auto clone = std::make_unique<Object3D>();
    clone->numFaces = mesh.numFaces;
    clone->numVertices = mesh.numVertices;
    clone->vertices = copyArray(mesh.vertices.get(), 3 * std::int64_t{mesh.numVertices});
    clone->vertexIndex = copyArray(mesh.vertexIndex.get(), 3 * std::int64_t{mesh.numFaces});
    std::memcpy(clone->name, mesh.name, sizeof clone->name);
    std::memcpy(clone->label, mesh.label, sizeof clone->label);
    appendWhatFits(clone->name, " (clone)");
    return clone;
}

std::unique_ptr<Object3D> copyMesh(const Object3D& mesh) {
    const std::int64_t vertices = mesh.numVertices;
    const std::int64_t faces = mesh.numFaces;
    std::unique_ptr<Object3D> copy = cloneMesh(mesh);
    copy->numTexels = mesh.numTexels;
    copy->texels = tryCopyArray(mesh.texels.get(), 2 * std::int64_t{mesh.numTexels});
    copy->texelIndex = tryCopyArray(mesh.texelIndex.get(), 3 * faces);
    copy->faceColours = tryCopyArray(mesh.faceColours.get(), 3 * faces);
    copy->vertexNormals = tryCopyArray(mesh.vertexNormals.get(), 3 * vertices);
    copy->faceNormals = tryCopyArray(mesh.faceNormals.get(), 3 * faces);
    copy->vertexWeights = tryCopyArray(mesh.vertexWeights.get(), vertices);
    copy->vertexColours = tryCopyArray(mesh.vertexColours.get(), 3 * vertices);
    return copy;
}

BoundingBox boundingBox(const Object3D& mesh) {
    const std::span<const float> v = mesh.vertexSpan();
    if (v.empty()) {
        return {};
    }
    BoundingBox box{v[0], v[0], v[1], v[1], v[2], v[2]};
    const auto extend = [](float value, float& smallest, float& largest) {
        if (value > largest) {
            largest = value;
        }
        if (value < smallest) {
            smallest = value;
        }
    };
    for (std::size_t i = 0; i < v.size(); i += 3) {
        extend(v[i], box.xmin, box.xmax);
        extend(v[i + 1], box.ymin, box.ymax);
        extend(v[i + 2], box.zmin, box.zmax);
    }
    return box;
}

void centreOfMass(const Object3D& mesh, double* centre) {
    const std::span<const float> v = mesh.vertexSpan();
    double sum[3] = {};
    for (std::size_t i = 0; i < v.size(); i += 3) {
        sum[0] += static_cast<double>(v[i]);
        sum[1] += static_cast<double>(v[i + 1]);
        sum[2] += static_cast<double>(v[i + 2]);
    }
    const auto count = static_cast<double>(static_cast<float>(mesh.numVertices));
    if (centre != nullptr) {
        std::transform(sum, sum + 3, centre, [count](double s) { return s / count; });
    }
}

float largestAbsoluteCoordinate(const Object3D& mesh) {
    float largest = 0;
    for (const float value : mesh.vertexSpan()) {
        if (std::fabs(value) > largest) {
            largest = std::fabs(value);
        }
    }
    return largest;
}

}  // namespace talvek
