#include "faults/scenario.h"

#include <unistd.h>

#include <array>
#include <filesystem>
#include <iostream>
#include <sstream>

#include "talvek.h"
#include "weathering/random.h"

namespace talvek::test {

namespace {

constexpr std::size_t kMostValues = 9000;

bool isWriting(Fault fault) {
    return fault >= Fault::kWrite;
}

/// Everything that a host can ask the session for.
std::string sessionText() {
    std::ostringstream text;
    text << talvekGetMode() << ' ' << talvekGetModel() << ' ' << talvekGetNumEpochs() << ' ' << talvekGetStatus();
    std::array<char, TALVEK_FILE_NAME_SIZE> name{};
    talvekGetFileName(name.data());
    text << name.data();
    std::array<float, TALVEK_MATERIAL_PARAMS> values{};
    text << ' ' << talvekGetMaterialParams(values.data());
    for (const float value : values) {
        text << ' ' << value;
    }
    for (std::uint32_t epoch = 1; epoch <= static_cast<std::uint32_t>(talvekGetNumEpochs()); ++epoch) {
        text << ' ' << talvekGetEpochParams(epoch, values.data()) << ' ' << talvekGetEpochTimeSpan(epoch);
        for (int i = 0; i < TALVEK_EPOCH_PARAMS; ++i) {
            text << ' ' << values[static_cast<std::size_t>(i)];
        }
    }
    return text.str();
}

}  // namespace

std::filesystem::path folderInMemory() {
    constexpr const char* kInMemory = "/dev/shm";
    return ::access(kInMemory, W_OK) == 0 ? std::filesystem::path(kInMemory) : std::filesystem::temp_directory_path();
}

FileContents contentsOf(const TempFolder& folder) {
    FileContents contents;
    for (const auto& entry : std::filesystem::directory_iterator(folder.path())) {
        contents[entry.path().filename().string()] = readFile(entry.path().string());
    }
    return contents;
}

void PrintTo(const Scenario& scenario, std::ostream* out) {
    *out << scenario.name;
}

std::string scenarioName(const ::testing::TestParamInfo<Scenario>& scenario) {
    return scenario.param.name;
}

void ScenarioTest::SetUp() {
    material_.outputPath = folder_.file("output file of the host");
    for (const auto& [name, content] : GetParam().files) {
        alternatives_[name].insert(content);
    }
    if (!GetParam().dispensable.empty()) {
        learnAlternative();
    }
    prepareFiles();
    prepareSession();
    ASSERT_EQ(act(), TALVEK_OK);
    expected_ = outcome();
}

void ScenarioTest::TearDown() {
    talvekFree();
    std::cout << GetParam().name << ": " << injections_ << " faults injected\n";
}

void ScenarioTest::prepareFiles() {
    for (const auto& entry : std::filesystem::directory_iterator(folder_.path())) {
        std::filesystem::remove(entry.path());
    }
    for (const auto& [name, content] : GetParam().files) {
        writeFile(folder_.file(name), content);
    }
}

void ScenarioTest::prepareSession() {
    talvekSetTimeSpan(GetParam().epochs, 365);
    talvekSetMode(GetParam().mode);
    talvekSetModel(GetParam().model);
    talvekSetResults(1);
    ASSERT_EQ(talvekSetFileName(folder_.file("stone.obj").c_str()), TALVEK_OK);
    ASSERT_EQ(talvekInit(), TALVEK_OK);
}

std::int32_t ScenarioTest::act(Fault fault, std::int64_t n) {
    material_.vertices.assign(kMostValues, -7);
    material_.normals.assign(kMostValues, -7);
    randomGenerator() = RandomGenerator();
    ::testing::internal::CaptureStdout();
    ::testing::internal::CaptureStderr();
    armFault(fault, n, folder_.path());
    const std::int32_t result = GetParam().act(material_);
    hasHappened_ = disarmFault();
    ::testing::internal::GetCapturedStdout();
    ::testing::internal::GetCapturedStderr();
    return result;
}

ScenarioTest::Outcome ScenarioTest::outcome() const {
    return {contentsOf(folder_), sessionText(), material_.vertices, material_.normals};
}

void ScenarioTest::learnAlternative() {
    prepareFiles();
    std::filesystem::remove(folder_.file(GetParam().dispensable));
    prepareSession();
    ASSERT_EQ(act(), TALVEK_OK);
    for (const auto& [name, content] : contentsOf(folder_)) {
        alternatives_[name].insert(content);
    }
}

void ScenarioTest::expectKnownResult(Fault fault, std::int32_t result, const std::string& where) {
    const auto& failures = isWriting(fault) ? GetParam().failuresToWrite : GetParam().failuresToRead;
    EXPECT_TRUE(result == TALVEK_OK || failures.contains(result)) << where << " gave " << result;
    if (isHarmless(fault)) {
        EXPECT_EQ(result, TALVEK_OK) << where;
        EXPECT_TRUE(outcome() == expected_) << where << " changed the outcome";
    } else if (GetParam().isAllOrNothing && result == TALVEK_OK) {
        EXPECT_TRUE(outcome() == expected_) << where << " called half a success one";
    } else if (GetParam().isAllOrNothing && GetParam().inPlace.empty()) {
        EXPECT_EQ(contentsOf(folder_), GetParam().files) << where << " failed and changed files";
    }
}

void ScenarioTest::expectOnlyWholeFiles(const std::string& where) {
    const FileContents contents = contentsOf(folder_);
    for (const auto& [name, content] : contents) {
        ASSERT_TRUE(expected_.files.contains(name)) << where << " left " << name;
        if (!GetParam().inPlace.contains(name)) {
            const auto others = alternatives_.find(name);
            ASSERT_TRUE(content == expected_.files.at(name) ||
                        (others != alternatives_.end() && others->second.contains(content)))
                << where << " left a part of " << name;
        }
    }
    for (const auto& [name, content] : GetParam().files) {
        ASSERT_TRUE(contents.contains(name)) << where << " lost " << name;
    }
}

/// Lets the n-th operation fail. Returns whether there was an n-th.
bool ScenarioTest::inject(Fault fault, std::int64_t n) {
    const std::string where = GetParam().name + ", " + faultName(fault) + " " + std::to_string(n);
    talvekFree();
    const std::int64_t blocksBefore = liveBlocks();
    prepareFiles();
    prepareSession();
    const std::int32_t result = act(fault, n);
    const bool hasHappened = hasHappened_;
    expectKnownResult(fault, result, where);
    expectOnlyWholeFiles(where);
    if (n % GetParam().repeatedAfter == 0 || !hasHappened) {
        repeat(where);
    }
    talvekFree();
    EXPECT_EQ(liveBlocks(), blocksBefore) << where << " lost memory";
    return hasHappened;
}

void ScenarioTest::repeat(const std::string& where) {
    for (const std::string& name : GetParam().inPlace) {
        std::filesystem::remove(folder_.file(name));
    }
    prepareSession();
    EXPECT_EQ(act(), TALVEK_OK) << where << " spoiled the operation after it";
    EXPECT_TRUE(outcome() == expected_) << where << " spoiled the operation after it";
}

void ScenarioTest::expectToSurvive() {
    for (const Fault fault : kAllFaults) {
        for (std::int64_t n = 1; inject(fault, n) && !HasFailure(); ++n) {
            ++injections_;
        }
    }
    RecordProperty("injections", static_cast<int>(injections_));
    EXPECT_GE(injections_, GetParam().leastInjections);
}

}  // namespace talvek::test
