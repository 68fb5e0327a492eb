// Three components, calculated in the order in which the formulas are written: results are promised bit for bit.
#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>

namespace talvek {

template <typename T>
struct Vector3 {
    T x, y, z;
};

/// Item i of a flat array of triples.
template <typename T>
Vector3<T> tripleAt(const float* triples, std::int64_t i) {
    const float* item = triples + 3 * i;
    return {static_cast<T>(item[0]), static_cast<T>(item[1]), static_cast<T>(item[2])};
}

inline void storeTriple(float* triples, std::int64_t i, const Vector3<float>& v) {
    float* item = triples + 3 * i;
    item[0] = v.x;
    item[1] = v.y;
    item[2] = v.z;
}

template <typename T>
Vector3<T> operator+(const Vector3<T>& a, const Vector3<T>& b) {
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}

template <typename T>
Vector3<T> operator-(const Vector3<T>& a, const Vector3<T>& b) {
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}

template <typename T>
Vector3<T> operator*(const Vector3<T>& v, T factor) {
    return {v.x * factor, v.y * factor, v.z * factor};
}

template <typename T>
Vector3<T> operator/(const Vector3<T>& v, T divisor) {
    return {v.x / divisor, v.y / divisor, v.z / divisor};
}

template <typename T>
T dot(const Vector3<T>& a, const Vector3<T>& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

template <typename T>
Vector3<T> cross(const Vector3<T>& a, const Vector3<T>& b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

template <typename T>
T length(const Vector3<T>& v) {
    return std::sqrt(dot(v, v));
}

}  // namespace talvek
