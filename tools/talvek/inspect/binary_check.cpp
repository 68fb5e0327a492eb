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

/// The whole numbers that a file begins with; those it does not hold are missing.
std::vector<std::int64_t> leadingInts(const std::string& path, std::size_t count) {
    system::File file = system::File::openForReading(path.c_str());
    std::vector<std::int64_t> values;
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
        findings.addFatal(atByte(sizeOf(path)) + "the file ends within its head of " +
                          std::to_string(kValueSize * static_cast<std::int64_t>(wanted)) + " bytes");
        return false;
    }
    for (std::size_t i = firstCount; i <= lastCount; ++i) {
        if (head[i] < 0) {
            findings.addFatal(atByte(kValueSize * static_cast<std::int64_t>(i)) + "the count is " +
                              std::to_string(head[i]) + "; the file is damaged or of another format");
            return false;
        }
    }
    return true;
}

/// The counts are those of ints, so a size of this many values stays far within range.
void compareSizes(const std::string& path, std::int64_t promised, const std::string& whose, Findings& findings) {
    const std::int64_t size = sizeOf(path);
    if (size < promised) {
        findings.add(atByte(size) + "the file ends here, and its head promises " + std::to_string(promised) +
                     " bytes (" + whose + "); what is missing is read as zeros, or the file is refused");
    }
}

}  // namespace

void checkSasFile(const std::string& path, Findings& findings) {
    constexpr std::int64_t kOldest = SasHeader::kPlanar;
    constexpr std::int64_t kNewest = SasHeader::kTexelIndex;
    const std::vector<std::int64_t> head = leadingInts(path, 5);
    if (!hasPlausibleHead(path, head, 5, 1, 2, findings)) {
        return;
    }
    if (head[0] < kOldest || head[0] > kNewest) {
        findings.addFatal(atByte(0) + "the version is " + std::to_string(head[0]) + "; versions " +
                          std::to_string(kOldest) + " to " + std::to_string(kNewest) + " are read");
        return;
    }
    if (head[0] == kOldest) {
        findings.add("this is a SAS file of version " + std::to_string(kOldest) +
                     "; the first run that loads it replaces it by its version " +
                     std::to_string(SasHeader::kWithoutTexels) + " form");
    }
    const std::int64_t texels = head[0] == SasHeader::kTexelPerVertex ? 2 * head[2] : 0;
    compareSizes(path, SasHeader::kSize + kValueSize * (3 * head[2] + 9 * head[1] + texels),
                 countOf(static_cast<std::uint64_t>(head[1]), "face") + ", " +
                     countOf(static_cast<std::uint64_t>(head[2]), "vertex"),
                 findings);
}

void checkBinFile(const std::string& path, Findings& findings) {
    constexpr std::int64_t kHeadSize = 8;
    const std::vector<std::int64_t> head = leadingInts(path, 2);
    if (hasPlausibleHead(path, head, 2, 0, 1, findings)) {
        compareSizes(path, kHeadSize + 3 * kValueSize * (head[0] + head[1]),
                     countOf(static_cast<std::uint64_t>(head[0]), "vertex") + ", " +
                         countOf(static_cast<std::uint64_t>(head[1]), "face"),
                     findings);
    }
}

void checkFimFile(const std::string& path, Findings& findings) {
    constexpr std::int64_t kHeadSize = 12;
    constexpr std::int64_t kChannels = 3;
    const std::vector<std::int64_t> head = leadingInts(path, 3);
    if (!hasPlausibleHead(path, head, 3, 0, 2, findings)) {
        return;
    }
    if (head[2] != kChannels) {
        findings.addFatal(atByte(8) + "the image has " + std::to_string(head[2]) + " channels; a geometry image has 3");
        return;
    }
    // The product of two counts fits; a file that long there is not.
    const std::int64_t pixels = head[0] * head[1];
    constexpr std::int64_t kMostPixels = INT64_MAX / (kChannels * kValueSize) - kHeadSize;
    compareSizes(path, kHeadSize + kChannels * kValueSize * std::min(pixels, kMostPixels),
                 std::to_string(head[0]) + " x " + std::to_string(head[1]) + " pixels", findings);
}

}  // namespace talvek::host
