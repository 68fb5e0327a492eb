#include "talvek/support/nearest_name.h"

#include <algorithm>
#include <cstddef>
#include <numeric>

namespace talvek::host {

namespace {

/// How many letters have to be put in, left out or replaced (V. Levenshtein, 1966).
std::size_t changesBetween(const std::string& a, const std::string& b) {
    std::vector<std::size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 0; i < a.size(); ++i) {
        std::size_t diagonal = row[0];
        row[0] = i + 1;
        for (std::size_t k = 0; k < b.size(); ++k) {
            const std::size_t replaced = diagonal + (a[i] == b[k] ? 0 : 1);
            diagonal = row[k + 1];
            row[k + 1] = std::min({replaced, row[k] + 1, diagonal + 1});
        }
    }
    return row.back();
}

}  // namespace

std::string nearestName(const std::string& word, const std::vector<std::string>& names) {
    std::string nearest;
    // A third of the letters may be wrong, and in any case one.
    std::size_t fewest = std::max<std::size_t>(word.size() / 3, 1) + 1;
    for (const std::string& name : names) {
        const std::size_t changes = changesBetween(word, name);
        if (changes < fewest) {
            fewest = changes;
            nearest = name;
        }
    }
    return nearest;
}

std::string didYouMean(const std::string& name) {
    return name.empty() ? "" : ", did you mean " + name + "?";
}

}  // namespace talvek::host
