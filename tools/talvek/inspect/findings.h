// What is found in a mesh file.
#pragma once

#include <string>
#include <vector>

namespace talvek::host {

struct Findings {
    /// Sentences, each saying where and what.
    std::vector<std::string> sentences;
    /// Whether one of them keeps the mesh from loading.
    bool isFatal = false;

    void add(std::string sentence) { sentences.push_back(std::move(sentence)); }
    void addFatal(std::string sentence) {
        add(std::move(sentence));
        isFatal = true;
    }
};

}  // namespace talvek::host
