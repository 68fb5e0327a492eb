#include "talvek/preflight/size_warning.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "talvek/inspect/mesh_size.h"
#include "talvek/plan/planned_movement.h"
#include "talvek/support/messages.h"

namespace talvek::host {

namespace {

constexpr double kSmallest = 10;
constexpr double kLargest = 100'000;
constexpr double kShareOfEdge = 0.5;
constexpr double kShareOfExtent = 0.05;

struct Unit {
    const char* name;
    double millimetres;
};

// Those a scan is likely to be in, the likeliest first.
constexpr Unit kUnits[] = {{"m", 1000}, {"cm", 10}, {"in", 25.4}};

/// Of something that is carried, or stands in a wall.
constexpr double kUsualSmallest = 50;
constexpr double kUsualLargest = 20'000;

/// How far the planned epochs take the surface from where it is, at most.
double farthestMovement(const SessionPlan& plan) {
    double sum = 0;
    double farthest = 0;
    for (const PlannedEpoch& epoch : plan.epochs) {
        sum += plannedDelta(plan, epoch).value_or(0);
        farthest = std::max(farthest, std::abs(sum));
    }
    return farthest;
}

std::string unitAdvice(const MeshSize& size) {
    for (const Unit& unit : kUnits) {
        const double extent = size.largest() * unit.millimetres;
        if (size.largest() < kSmallest && extent >= kUsualSmallest && extent <= kUsualLargest) {
            return " With --unit " + std::string(unit.name) + " it would be " + size.times(unit.millimetres).text() +
                   " large.";
        }
    }
    return {};
}

void addClause(std::string& text, const std::string& clause) {
    text += (text.empty() ? "" : ", and ") + clause;
}

}  // namespace

std::string sizeWarning(const SessionPlan& plan, const Object3D& mesh) {
    const MeshSize size = sizeOf(mesh);
    const double movement = farthestMovement(plan);
    const auto edge = static_cast<double>(mesh.meanEdgeLength);
    std::string text;
    if (size.largest() < kSmallest) {
        addClause(text, "the mesh is only " + size.text() + " large");
    } else if (size.largest() > kLargest) {
        addClause(text, "the mesh is " + size.text() + " large, which is more than 100 m");
    }
    if (movement > kShareOfExtent * size.largest()) {
        addClause(text, "the epochs move its surface by " + briefNumber(movement) +
                            " mm, which is more than 5 % of its "
                            "size of " +
                            briefNumber(size.largest()) + " mm");
    } else if (std::isfinite(edge) && movement > kShareOfEdge * edge) {
        addClause(text, "the epochs move its surface by " + briefNumber(movement) + " mm, and its edges are " +
                            briefNumber(edge) + " mm long on average: faces may turn over where they are smaller");
    }
    return text.empty() ? "" : text + "; is this mesh in millimetres?" + unitAdvice(size);
}

}  // namespace talvek::host
