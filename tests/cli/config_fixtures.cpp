#include "cli/config_fixtures.h"

namespace talvek::test {

namespace {

constexpr const char* kHead = "mode = 1;\nmodel = 3;\n";
constexpr const char* kMaterial = "mtl = 0.14, 0.11, 544.3, 312, 375, 2452, 100.9, 2.714;\n";
constexpr const char* kEpoch = "epc_1 = 100, 4e-13, 1e-12, 1, 5;\n";

void writeSoundConfigs(const TempFolder& folder) {
    const std::string whole = std::string(kHead) + kMaterial + "epcs = 1;\n" + kEpoch;
    writeFile(folder.file("whole.cfg"), whole);
    writeFile(folder.file("marked.cfg"), "\xEF\xBB\xBF" + whole);
    writeFile(folder.file("remarks.cfg"), std::string("// head = remark\r\n\r\n# another\r\nmode = 1; mesh data\r\n"
                                                      "model = 3 // acid rain\r\n") +
                                              kMaterial + "epcs=1\r\n" + kEpoch);
    writeFile(folder.file("template.cfg"), std::string(kHead) + kMaterial +
                                               "epcs = 3;\nepc_2 = 7, 4e-13, 1e-12, 1, 5;\n"
                                               "epc_0 = 100, 4e-13, 1e-12, 1, 5;\n");
}

void writeFaultyLines(const TempFolder& folder) {
    const std::string head = std::string(kHead) + kMaterial + "epcs = 1;\n";
    writeFile(folder.file("unknown.cfg"), head + kEpoch + "rain = 3;\n");
    writeFile(folder.file("capital.cfg"), "Mode = 1;\nmodel = 3;\nepcs = 1;\n" + std::string(kEpoch));
    writeFile(folder.file("prose.cfg"), head + kEpoch + "and then it rained\n");
    writeFile(folder.file("indented.cfg"), head + "  " + kEpoch);
    writeFile(folder.file("joined.cfg"), "mode = 1; model = 3;\nepcs = 1;\n" + std::string(kEpoch));
    writeFile(folder.file("twice.cfg"), head + kEpoch + kEpoch);
    writeFile(folder.file("again.cfg"), head + "mode = 1;\n" + kEpoch);
    writeFile(folder.file("comma.cfg"),
              std::string(kHead) + "mtl = 0,14, 0,11, 544,3, 312, 375, 2452, 100,9, 2,714;\nepcs = 1;\n" + kEpoch);
    writeFile(folder.file("halves.cfg"), head + "epc_1 = 365, 4,09e-13, 1,023e-12;\n");
    writeFile(folder.file("few.cfg"), head + "epc_1 = 100, 4e-13;\n");
    writeFile(folder.file("word.cfg"), head + "epc_1 = 100, 4e-13, 1e-12, one, 5;\n");
    writeFile(folder.file("number.cfg"), head + "epc_01 = 100, 4e-13, 1e-12, 1, 5;\n");
}

void writeIncompleteConfigs(const TempFolder& folder) {
    const std::string epochs = std::string("epcs = 1;\n") + kEpoch;
    writeFile(folder.file("empty.cfg"), "");
    writeFile(folder.file("silent.cfg"), "// nothing to say\n");
    writeFile(folder.file("modeless.cfg"), "model = 3;\n" + epochs);
    writeFile(folder.file("modelless.cfg"), "mode = 1;\n" + epochs);
    writeFile(folder.file("half.cfg"), std::string(kHead) + kMaterial + "epcs = 1.5;\n" + kEpoch);
    writeFile(folder.file("none.cfg"), std::string(kHead) + kMaterial + "epcs = 0;\n");
    writeFile(folder.file("gap.cfg"), std::string(kHead) + kMaterial + "epcs = 3;\n" + kEpoch);
    writeFile(folder.file("dayless.cfg"), std::string(kHead) + kMaterial);
    writeFile(folder.file("beyond.cfg"),
              std::string(kHead) + kMaterial + "epcs = 1;\n" + kEpoch + "epc_2 = 100, 4e-13, 1e-12, 1, 5;\n");
    writeFile(folder.file("countless.cfg"),
              std::string(kHead) + kMaterial + kEpoch + "epc_2 = 100, 4e-13, 1e-12, 1, 5;\n");
}

void writeImpossibleValues(const TempFolder& folder) {
    const std::string head = std::string(kHead) + kMaterial + "epcs = 2;\n" + kEpoch;
    writeFile(folder.file("acid.cfg"), head + "epc_2 = 100, 4e-13, 1e-12, 1, 14.5;\n");
    writeFile(folder.file("basic.cfg"), head + "epc_2 = 100, 4e-13, 1e-12, 1, -1;\n");
    writeFile(folder.file("dry.cfg"), head + "epc_2 = 100, 4e-13, 1e-12, -1, 5;\n");
    writeFile(folder.file("huge.cfg"), head + "epc_2 = 100, 4e-13, 1e-12, 1e400, 5;\n");
    writeFile(folder.file("light.cfg"),
              std::string(kHead) + "mtl = 0.14, 0.11, 544.3, 312, 375, 2452, 100.9, -2.7;\nepcs = 1;\n" + kEpoch);
    writeFile(folder.file("negative.cfg"), head + "epc_2 = -4, 4e-13, 1e-12, 1, 5;\n");
    writeFile(folder.file("nan.cfg"), head + "epc_0 = nan, 4e-13, 1e-12, 1, 5;\n");
}

void writeOtherModes(const TempFolder& folder) {
    const std::string epoch = "epcs = 1;\nepc_1 = 10, ";
    writeFile(folder.file("offsets.cfg"), "mode = 0;\nmodel = 0;\n" + epoch + "0.5, 0, 0, 0;\n");
    writeFile(folder.file("zero.cfg"), "mode = 1;\nmodel = 0;\n" + epoch + "4e-13, 1e-12, 1, 5;\n");
    writeFile(folder.file("seven.cfg"), "mode = 1;\nmodel = 7;\n" + epoch + "4e-13, 1e-12, 1, 5;\n");
    writeFile(folder.file("nine.cfg"), "mode = 9;\r\nmodel = 7;\r\n" + epoch + "4e-13, 1e-12, 1, 5;\n");
}

}  // namespace

void writeConfigFixtures(const TempFolder& folder) {
    writeSoundConfigs(folder);
    writeFaultyLines(folder);
    writeIncompleteConfigs(folder);
    writeImpossibleValues(folder);
    writeOtherModes(folder);
}

}  // namespace talvek::test
