// What is found in a mesh file.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace talvek::host {

enum class Severity : std::uint8_t {
    /// Something to know about a mesh that is read as it was meant.
    kNotice,
    /// Something of the file that its reader leaves out or takes otherwise than meant.
    kLoss,
    /// Something that keeps the mesh from loading.
    kFatal,
};

struct Finding {
    Severity severity = Severity::kNotice;
    /// A word for scripts.
    const char* kind = "";
    std::int64_t count = 0;
    /// A sentence that says where and what.
    std::string text;
};

struct Findings {
    std::vector<Finding> all;

    void note(const char* kind, std::int64_t count, std::string text) {
        all.push_back({Severity::kNotice, kind, count, std::move(text)});
    }
    void lose(const char* kind, std::int64_t count, std::string text) {
        all.push_back({Severity::kLoss, kind, count, std::move(text)});
    }
    void fail(const char* kind, std::int64_t count, std::string text) {
        all.push_back({Severity::kFatal, kind, count, std::move(text)});
    }
    /// The first of a severity; null where there is none.
    const Finding* first(Severity severity) const {
        const auto found = std::ranges::find(all, severity, &Finding::severity);
        return found == all.end() ? nullptr : &*found;
    }
    bool isFatal() const { return first(Severity::kFatal) != nullptr; }
};

/// "12.3 %", of counts or of areas.
std::string shareText(double part, double whole);

/// "12 of 345 faces"
std::string partText(std::int64_t part, std::int64_t whole, const std::string& things);

}  // namespace talvek::host
