// Fuzzes the order and the arguments of the calls a host makes: the input is a list of calls, one byte each followed by
// the bytes of its arguments. Every buffer that is handed over has exactly the size the interface asks for.
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <limits>
#include <string>
#include <vector>

#include "input_on_disk.h"
#include "talvek.h"

namespace {

/// The bytes of the input, zeros behind its end.
class Bytes {
  public:
    Bytes(const std::uint8_t* data, std::size_t size) : next_(data), end_(data + size) {}

    bool isAtEnd() const { return next_ == end_; }
    std::uint8_t byte() { return isAtEnd() ? 0 : *next_++; }

    /// Mostly a small number, sometimes one at the end of a range.
    std::int32_t number() {
        constexpr std::int32_t kSpecial[] = {-1,
                                             TALVEK_MAX_EPOCHS,
                                             TALVEK_MAX_EPOCHS + 1,
                                             TALVEK_MAX_EPOCH_DAYS,
                                             TALVEK_MAX_EPOCH_DAYS + 1,
                                             std::numeric_limits<std::int32_t>::max(),
                                             std::numeric_limits<std::int32_t>::min()};
        constexpr std::uint8_t kFirstSpecial = 256 - std::size(kSpecial);
        const std::uint8_t value = byte();
        return value < kFirstSpecial ? value % 8 : kSpecial[value - kFirstSpecial];
    }
    std::uint32_t epoch() { return static_cast<std::uint32_t>(number()); }

    /// Any float at all; a byte of 0 stands for no array.
    std::vector<float> floats(std::size_t count) {
        std::vector<float> values(count);
        for (float& value : values) {
            std::uint8_t bits[sizeof value];
            std::generate(bits, bits + sizeof bits, [this] { return byte(); });
            std::memcpy(&value, bits, sizeof value);
        }
        return values;
    }
    bool isNull() { return byte() == 0; }

    std::string text() {
        std::string text(byte() % 64, '\0');
        std::generate(text.begin(), text.end(), [this] { return static_cast<char>(byte()); });
        return text.substr(0, text.find('\0'));
    }

  private:
    const std::uint8_t* next_;
    const std::uint8_t* end_;
};

using Call = void (*)(Bytes&);

/// Files stay in the folder of this process.
std::string fileIn(Bytes& bytes) {
    constexpr const char* kNames[] = {"stone.obj", "stone",     "stone.sas", "stone.wrl",
                                      "stone.bin", "stone.fim", "none.obj"};
    return talvek::fuzz::folder() + "/" + kNames[bytes.byte() % std::size(kNames)];
}

/// Runs of thousands of epochs are slow, not interesting.
bool isLongRun() {
    constexpr std::int32_t kMostEpochs = 8;
    return talvekGetNumEpochs() > kMostEpochs;
}

void writeMesh(Bytes& bytes) {
    constexpr const char* kNames[] = {"stone.obj", "stone.sas", "stone.wrl", "stone.bin",
                                      "stone.fim", "stone.bmp", "stone.cfg"};
    const char* name = kNames[bytes.byte() % std::size(kNames)];
    const std::string content = bytes.text() + bytes.text() + bytes.text();
    talvek::fuzz::writeInput(name, reinterpret_cast<const std::uint8_t*>(content.data()), content.size());
}

void getGeometry(Bytes& bytes) {
    const std::uint32_t frame = bytes.epoch();
    const std::int32_t triangles = talvekGetFrameNumTriangles(frame);
    if (triangles < 0) {
        std::abort();
    }
    std::vector<float> vertices(9 * static_cast<std::size_t>(triangles));
    std::vector<float> normals(9 * static_cast<std::size_t>(triangles));
    talvekGetFrameGeometry(frame, bytes.isNull() ? nullptr : vertices.data(), normals.data());
}

void saveGeometry(Bytes& bytes) {
    const std::int32_t triangles = bytes.number();
    // Only as many triangles as there are values for, or counts that have to be refused.
    const std::vector<float> vertices = bytes.floats(9 * static_cast<std::size_t>(std::clamp(triangles, 0, 8)));
    if (triangles <= 8) {
        talvekSaveFrameGeometryObj(fileIn(bytes).c_str(), triangles, bytes.isNull() ? nullptr : vertices.data(),
                                   nullptr);
    }
}

constexpr Call kCalls[] = {
    [](Bytes&) { talvekInit(); },
    [](Bytes&) { talvekFree(); },
    [](Bytes&) {
        if (!isLongRun() && talvekStart() == TALVEK_OK) {
            talvek::fuzz::countUse();
        }
    },
    [](Bytes&) { talvekStop(); },
    [](Bytes&) { talvekGetStatus(); },
    [](Bytes& b) { talvekSetFileName(b.isNull() ? nullptr : fileIn(b).c_str()); },
    [](Bytes& b) {
        talvekSetFileName((talvek::fuzz::folder() + "/" + std::string(std::size_t{8} * b.byte(), 'x')).c_str());
    },
    [](Bytes& b) {
        std::vector<char> out(TALVEK_FILE_NAME_SIZE);
        talvekGetFileName(b.isNull() ? nullptr : out.data());
    },
    [](Bytes& b) { talvekSetMode(b.number()); },
    [](Bytes&) { talvekGetMode(); },
    [](Bytes&) { talvekGetMaxMode(); },
    [](Bytes& b) { talvekSetModel(b.number()); },
    [](Bytes&) { talvekGetModel(); },
    [](Bytes&) { talvekGetMaxModel(); },
    [](Bytes& b) { talvekSetNumEpochs(b.number()); },
    [](Bytes&) { talvekGetNumEpochs(); },
    [](Bytes&) { talvekGetMaxEpochs(); },
    [](Bytes&) { talvekGetMaxEpochDays(); },
    [](Bytes& b) {
        const std::int32_t epochs = b.number();
        talvekSetTimeSpan(epochs, b.number());
    },
    [](Bytes& b) {
        const std::uint32_t epoch = b.epoch();
        talvekSetEpochTimeSpan(epoch, b.epoch());
    },
    [](Bytes& b) { talvekGetEpochTimeSpan(b.epoch()); },
    [](Bytes& b) { talvekSetMaterialParams(b.isNull() ? nullptr : b.floats(TALVEK_MATERIAL_PARAMS).data()); },
    [](Bytes& b) {
        std::vector<float> out(TALVEK_MATERIAL_PARAMS);
        talvekGetMaterialParams(b.isNull() ? nullptr : out.data());
    },
    [](Bytes& b) {
        const std::uint32_t epoch = b.epoch();
        talvekSetEpochParams(epoch, b.isNull() ? nullptr : b.floats(TALVEK_EPOCH_PARAMS).data());
    },
    [](Bytes& b) {
        std::vector<float> out(TALVEK_EPOCH_PARAMS);
        talvekGetEpochParams(b.epoch(), b.isNull() ? nullptr : out.data());
    },
    [](Bytes&) { talvekReadParams(); },
    [](Bytes&) { talvekSaveParams(); },
    [](Bytes& b) { talvekSetResults(b.number()); },
    [](Bytes&) { talvekGetNumFrames(); },
    [](Bytes& b) {
        std::vector<char> out(TALVEK_FRAME_FILE_NAME_SIZE);
        talvekGetFrameFileName(b.epoch(), b.isNull() ? nullptr : out.data());
    },
    [](Bytes& b) {
        std::uint32_t days = 0;
        talvekGetFrameTime(b.epoch(), b.isNull() ? nullptr : &days);
    },
    [](Bytes& b) { talvekGetFrameNumTriangles(b.epoch()); },
    getGeometry,
    saveGeometry,
    [](Bytes& b) { talvekResetLogFile(b.isNull() ? nullptr : (talvek::fuzz::folder() + "/host.log").c_str()); },
    [](Bytes& b) {
        const std::string text = b.text();
        talvekAppendLogFile((talvek::fuzz::folder() + "/host.log").c_str(), b.isNull() ? nullptr : text.c_str());
    },
    // Not a call, but what lies beside the host's calls: the files.
    writeMesh,
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // Every input starts from the same session.
    talvekFree();
    talvekSetFileName((talvek::fuzz::folder() + "/stone.obj").c_str());
    talvekSetMode(TALVEK_MODE_MESH_DATA);
    talvekSetModel(TALVEK_MODEL_ACID_RAIN);
    talvekSetTimeSpan(2, 365);
    talvekSetResults(0);
    constexpr const char* kStone = "v 0 0 0\nv 1 0 0\nv 0 1 0\nv 0 0 1\nvt 0 0\nf 1/1 2/1 3/1\nf 1/1 3/1 4/1\n";
    talvek::fuzz::writeInput("stone.obj", reinterpret_cast<const std::uint8_t*>(kStone), std::strlen(kStone));
    constexpr int kMostCalls = 64;
    Bytes bytes(data, size);
    for (int i = 0; i < kMostCalls && !bytes.isAtEnd(); ++i) {
        kCalls[bytes.byte() % std::size(kCalls)](bytes);
    }
    return 0;
}
