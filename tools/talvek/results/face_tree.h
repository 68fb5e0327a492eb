// Finds the nearest place on a surface: a tree of boxes round its faces.
#pragma once

#include <array>
#include <cstdint>
#include <limits>
#include <vector>

#include "mesh/object3d.h"
#include "mesh/vector3.h"

namespace talvek::host {

struct NearestPlace {
    Vector3<double> point{};
    double squaredDistance = std::numeric_limits<double>::infinity();
    /// Positive where the place asked for lies on the outer side of the surface, along the normals of its faces.
    double signedDistance = 0;
    /// Of length 1: that of the face, or on an edge or a vertex one that tells both sides apart.
    Vector3<double> normal{};
    /// A number for nearestTo; -1 on a surface without faces.
    std::int32_t face = -1;
};

class FaceTree {
  public:
    /// Faces with a corner that is not finite, or without an area, are left out. Throws std::bad_alloc.
    explicit FaceTree(const Object3D& mesh);

    bool isEmpty() const { return faces_.empty(); }

    /// The nearest place on the surface, exactly. `guess` is the face of a place nearby, -1 for none; it makes the
    /// search faster and changes nothing else.
    NearestPlace nearestTo(const Vector3<double>& place, std::int32_t guess = -1) const;

  private:
    struct Face {
        std::array<Vector3<float>, 3> corners;
        std::array<std::int32_t, 3> vertices;
    };
    struct Node {
        std::array<float, 3> low;
        std::array<float, 3> high;
        /// Of a leaf the first of its faces, of another node the second of its children; the first stands behind it.
        std::int32_t next = 0;
        /// 0 for a node that is no leaf.
        std::int32_t numFaces = 0;
    };

    void build(std::int32_t first, std::int32_t last);
    void boundBox(Node& node, std::int32_t first, std::int32_t last) const;
    void look(std::int32_t face, const Vector3<double>& place, NearestPlace& best) const;
    Vector3<double> normalOf(const Face& face) const;
    static double squaredDistanceTo(const Node& node, const Vector3<double>& place);

    std::vector<Face> faces_;
    std::vector<Node> nodes_;
    /// For each vertex, the sum of the normals of its faces, each as much as its angle there.
    std::vector<Vector3<double>> vertexNormals_;
};

}  // namespace talvek::host
