// Polygons keep their surface: their triangles have its area, lie within it and are turned as it is.
#include "talvek/formats/polygon.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <set>
#include <stdexcept>
#include <utility>

namespace talvek::test {
namespace {

using host::PolygonDivision;
using Point = PolygonDivision::Point;

double areaOf(const Point& a, const Point& b, const Point& c) {
    return ((b[0] - a[0]) * (c[1] - a[1]) - (b[1] - a[1]) * (c[0] - a[0])) / 2;
}

/// Divides a polygon in the plane z = 0; every triangle has to go round to the left.
double dividedArea(const std::vector<Point>& corners, bool mayCross = false) {
    PolygonDivision division;
    EXPECT_EQ(division.divide(corners), !mayCross);
    EXPECT_EQ(division.triangles().size(), corners.size() - 2);
    double sum = 0;
    for (const auto& triangle : division.triangles()) {
        const double area =
            areaOf(corners[static_cast<std::size_t>(triangle[0])], corners[static_cast<std::size_t>(triangle[1])],
                   corners[static_cast<std::size_t>(triangle[2])]);
        EXPECT_TRUE(mayCross || area >= 0);
        sum += std::fabs(area);
    }
    return sum;
}

/// A comb of so many teeth, each of which is a notch between two others.
std::vector<Point> comb(int teeth) {
    std::vector<Point> corners = {{0, 0, 0}, {2.0 * teeth, 0, 0}};
    for (int i = teeth; i > 0; --i) {
        corners.push_back({2.0 * i, 10, 0});
        corners.push_back({2.0 * i - 1, 1, 0});
    }
    corners.push_back({0, 10, 0});
    return corners;
}

TEST(Polygons, ConcaveOnesKeepTheirArea) {
    // An arrow head, of which every fan from its first corner covers more.
    EXPECT_DOUBLE_EQ(dividedArea({{0, 0, 0}, {4, 2, 0}, {0, 4, 0}, {1, 2, 0}}), 6);
    EXPECT_DOUBLE_EQ(dividedArea({{4, 2, 0}, {0, 4, 0}, {1, 2, 0}, {0, 0, 0}}), 6);
    EXPECT_NEAR(dividedArea(comb(50)), 2.0 * 50 * 1 + 50 * 9.0, 1e-9);
}

TEST(Polygons, AStarOfRandomReachKeepsItsArea) {
    std::uint32_t state = 1;
    for (int round = 0; round < 200; ++round) {
        std::vector<Point> corners;
        const int count = 4 + round % 40;
        double area = 0;
        for (int i = 0; i < count; ++i) {
            state = state * 1664525 + 1013904223;
            const double reach = 1 + static_cast<double>(state >> 8) / 1e6;
            const double angle = 2 * std::numbers::pi * i / count;
            corners.push_back({reach * std::cos(angle), reach * std::sin(angle), 0});
        }
        for (std::size_t i = 0; i < corners.size(); ++i) {
            area += areaOf({}, corners[i], corners[(i + 1) % corners.size()]);
        }
        EXPECT_NEAR(dividedArea(corners), area, 1e-9 * area);
    }
}

TEST(Polygons, CornersInAStraightLineOrTwiceInOnePlaceAreKept) {
    EXPECT_DOUBLE_EQ(dividedArea({{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {2, 2, 0}, {0, 2, 0}}), 4);
    EXPECT_DOUBLE_EQ(dividedArea({{0, 0, 0}, {2, 0, 0}, {2, 0, 0}, {2, 2, 0}, {0, 2, 0}}), 4);
}

TEST(Polygons, BentOnesFarAwayAreDividedInTheirOwnPlane) {
    // The arrow head, standing upright, bent and far from the origin.
    const std::vector<Point> corners = {{5e5, 4e6, 0}, {5e5 + 4, 4e6 + 0.1, 2}, {5e5, 4e6, 4}, {5e5 + 1, 4e6 - 0.1, 2}};
    PolygonDivision division;
    EXPECT_TRUE(division.divide(corners));
    std::set<std::pair<int, int>> edges;
    for (const auto& triangle : division.triangles()) {
        for (std::size_t k = 0; k < 3; ++k) {
            edges.insert(std::minmax(triangle[k], triangle[(k + 1) % 3]));
        }
    }
    // Only this diagonal lies within the head.
    EXPECT_TRUE(edges.contains({1, 3}));
    EXPECT_FALSE(edges.contains({0, 2}));
}

TEST(Polygons, OutlinesThatCrossAreTold) {
    dividedArea({{0, 0, 0}, {2, 2, 0}, {2, 0, 0}, {0, 2, 0}}, true);
    std::vector<Point> pentagram;
    for (int i = 0; i < 5; ++i) {
        pentagram.push_back({std::cos(0.8 * std::numbers::pi * i), std::sin(0.8 * std::numbers::pi * i), 0});
    }
    dividedArea(pentagram, true);
    PolygonDivision division;
    EXPECT_FALSE(division.divide(std::vector<Point>{{NAN, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, INFINITY, 0}}));
    EXPECT_EQ(division.triangles().size(), 2);
}

TEST(Polygons, WorkIsBounded) {
    PolygonDivision division;
    const std::vector<Point> corners = comb(30000);
    EXPECT_THROW(division.divide(corners), std::length_error);
    EXPECT_THROW(division.divide(std::vector<Point>(200000, {NAN, 0, 0})), std::length_error);
}

}  // namespace
}  // namespace talvek::test
