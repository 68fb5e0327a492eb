// The elements of a PLY file, one after the other, from text or bytes.
#pragma once

#include <initializer_list>
#include <span>
#include <string_view>
#include <vector>

#include "talvek/formats/mesh_input.h"
#include "talvek/formats/ply_header.h"

namespace talvek::host {

class PlyRows {
  public:
    PlyRows(MeshInput& input, PlyEncoding encoding) : input_(input), encoding_(encoding) {}

    /// Throws Failure unless the file has room for as many elements. Only the values of these properties are kept;
    /// places below 0 are none.
    void begin(const PlyElement& element, std::initializer_list<int> wanted);

    /// Reads the next element's values. Throws Failure, naming the place, when they are not there, or when a line of
    /// text has more or fewer than the head says.
    void next(const PlyElement& element);

    /// The value of a property that is no list.
    double value(int property) const { return values_[firstOf(property)]; }
    std::span<const double> list(int property) const {
        const std::size_t first = firstOf(property);
        return {values_.data() + first, firsts_[static_cast<std::size_t>(property) + 1] - first};
    }

    /// Throws Failure at the element that was read last.
    [[noreturn]] void fail(const std::string& reason) const;

  private:
    std::size_t firstOf(int property) const { return firsts_[static_cast<std::size_t>(property)]; }
    void beginTextRow();
    void endTextRow(const PlyElement& element) const;
    double read(PlyType type) { return encoding_ == PlyEncoding::kText ? textValue(type) : byteValue(type); }
    void passOver(PlyType type, std::size_t count);
    double textValue(PlyType type);
    double byteValue(PlyType type);
    std::size_t listLength(const PlyProperty& property);

    MeshInput& input_;
    PlyEncoding encoding_;
    /// What is left of a line of text.
    std::string_view line_;
    std::vector<bool> isWanted_;
    std::vector<double> values_;
    /// Where each property's values begin, and where the last one's end.
    std::vector<std::size_t> firsts_;
};

}  // namespace talvek::host
