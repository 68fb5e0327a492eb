#include "talvek/inspect/binary_check.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <vector>

#include "Vexo_Lib/sas_encoding.h"
#include "base/little_endian.h"
#include "base/system.h"
#include "talvek/support/messages.h"

namespace talvek::host {

namespace {

constexpr std::int64_t kValueSize = 4;

/// The whole numbers at a byte of a file; those it does not hold are missing.
std::vector<std::int64_t> intsAt(const std::string& path, std::int64_t byte, std::size_t count) {
    system::File file = system::File::openForReading(path.c_str());
    std::vector<std::int64_t> values;
    if (byte > 0 && !file.skip(byte)) {
        return values;
    }
    std::array<unsigned char, kValueSize> bytes{};
    while (values.size() < count && file.read(bytes.data(), bytes.size()) == kValueSize) {
        values.push_back(fromLittleEndian<std::int32_t>(bytes.data()));
    }
    return values;
}

std::int64_t sizeOf(const std::string& path) {
    return system::File::openForReading(path.c_str()).size();
}

std::string atByte(std::int64_t byte) {
    return "byte " + std::to_string(byte) + ": ";
}

/// False, after a finding, for a head that is cut or holds a negative count.
bool hasPlausibleHead(const std::string& path, const std::vector<std::int64_t>& head, std::size_t wanted,
                      std::size_t firstCount, std::size_t lastCount, Findings& findings) {
    if (head.size() < wanted) {
        findings.fail("cut", 1,
                      atByte(sizeOf(path)) + "the file ends within its head of " +
                          std::to_string(kValueSize * static_cast<std::int64_t>(wanted)) + " bytes");
        return false;
    }
    for (std::size_t i = firstCount; i <= lastCount; ++i) {
        if (head[i] < 0) {
            findings.fail("negativeCount", 1,
                          atByte(kValueSize * static_cast<std::int64_t>(i)) + "the count is " +
                              std::to_string(head[i]) + "; the file is damaged or of another format");
            return false;
        }
    }
    return true;
}

/// The counts are those of ints, so a size of this many bytes stays far within range.
void compareSizes(const std::string& path, std::int64_t promised, const std::string& whose, Findings& findings) {
    const std::int64_t size = sizeOf(path);
    const auto bytes = [](std::int64_t count) { return static_cast<double>(count); };
    if (size < promised) {
        findings.lose("cut", promised - size,
                      atByte(size) + "the file ends here, and its head promises " + std::to_string(promised) +
                          " bytes (" + whose + "): " + shareText(bytes(promised - size), bytes(promised)) +
                          " of it is missing, and is read as zeros");
    } else if (size > promised) {
        findings.lose(
            "beyondHead", size - promised,
            atByte(promised) + "the file goes on for " + countOf(static_cast<std::uint64_t>(size - promised), "byte") +
                " behind what its head promises (" + whose + "): " + shareText(bytes(size - promised), bytes(size)) +
                " of it is not read; the head may be damaged");
    }
}

/// How large a file is whose last part is a list of texels at a byte, which begins with its count, and an index.
std::int64_t sizeWithTexels(const std::string& path, std::int64_t listAt, std::int64_t faces) {
    const std::vector<std::int64_t> count = intsAt(path, listAt, 1);
    const std::int64_t texels = count.empty() ? 0 : std::max<std::int64_t>(count[0], 0);
    return listAt + kValueSize * (1 + 2 * texels + 3 * faces);
}

std::int64_t promisedBySas(const std::string& path, std::int64_t version, std::int64_t faces, std::int64_t vertices) {
    const std::int64_t bare = SasHeader::kSize + kValueSize * (3 * vertices + 9 * faces);
    if (version == SasHeader::kTexelPerVertex) {
        return bare + 2 * kValueSize * vertices;
    }
    return version == SasHeader::kTexelIndex ? sizeWithTexels(path, bare, faces) : bare;
}

/// Behind the faces a file may end, or have a label, or a label and texels: one for each vertex, or a list.
std::int64_t promisedByBin(const std::string& path, std::int64_t vertices, std::int64_t faces) {
    constexpr std::int64_t kLabelSize = 20;
    const std::int64_t bare = 2 * kValueSize + 3 * kValueSize * (vertices + faces);
    const std::int64_t labelled = bare + kLabelSize;
    const std::int64_t size = sizeOf(path);
    const std::vector<std::int64_t> labelEnd = intsAt(path, labelled - kValueSize, 1);
    if (size <= bare || labelEnd.empty()) {
        return size <= bare ? bare : labelled;
    }
    // The label's last byte says that the texels have an index of their own.
    if (labelEnd[0] >> 24 == -1) {
        return sizeWithTexels(path, labelled, faces);
    }
    return size == labelled ? labelled : labelled + 2 * kValueSize * vertices;
}

}  // namespace

void checkSasFile(const std::string& path, Findings& findings) {
    constexpr std::int64_t kOldest = SasHeader::kPlanar;
    constexpr std::int64_t kNewest = SasHeader::kTexelIndex;
    const std::vector<std::int64_t> head = intsAt(path, 0, 5);
    if (!hasPlausibleHead(path, head, 5, 1, 2, findings)) {
        return;
    }
    if (head[0] < kOldest || head[0] > kNewest) {
        findings.fail("version", 1,
                      atByte(0) + "the version is " + std::to_string(head[0]) + "; versions " +
                          std::to_string(kOldest) + " to " + std::to_string(kNewest) + " are read");
        return;
    }
    if (head[0] == kOldest) {
        findings.note("oldVersion", 1,
                      "this is a SAS file of version " + std::to_string(kOldest) +
                          "; the first run that loads it replaces it by its version " +
                          std::to_string(SasHeader::kWithoutTexels) + " form");
    }
    compareSizes(path, promisedBySas(path, head[0], head[1], head[2]),
                 countOf(static_cast<std::uint64_t>(head[1]), "face") + ", " +
                     countOf(static_cast<std::uint64_t>(head[2]), "vertex"),
                 findings);
}

void checkBinFile(const std::string& path, Findings& findings) {
    const std::vector<std::int64_t> head = intsAt(path, 0, 2);
    if (hasPlausibleHead(path, head, 2, 0, 1, findings)) {
        compareSizes(path, promisedByBin(path, head[0], head[1]),
                     countOf(static_cast<std::uint64_t>(head[0]), "vertex") + ", " +
                         countOf(static_cast<std::uint64_t>(head[1]), "face"),
                     findings);
    }
}

void checkFimFile(const std::string& path, Findings& findings) {
    constexpr std::int64_t kHeadSize = 12;
    constexpr std::int64_t kChannels = 3;
    const std::vector<std::int64_t> head = intsAt(path, 0, 3);
    if (!hasPlausibleHead(path, head, 3, 0, 2, findings)) {
        return;
    }
    if (head[2] != kChannels) {
        findings.fail("channels", 1,
                      atByte(8) + "the image has " + std::to_string(head[2]) + " channels; a geometry image has 3");
        return;
    }
    // The product of two counts fits; a file that long there is not.
    const std::int64_t pixels = head[0] * head[1];
    constexpr std::int64_t kMostPixels = INT64_MAX / (kChannels * kValueSize) - kHeadSize;
    compareSizes(path, kHeadSize + kChannels * kValueSize * std::min(pixels, kMostPixels),
                 std::to_string(head[0]) + " x " + std::to_string(head[1]) + " pixels", findings);
}

}  // namespace talvek::host
