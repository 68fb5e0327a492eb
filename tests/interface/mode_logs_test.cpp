// What a run says in each operating mode that has words of its own, to the letter.
#include <gtest/gtest.h>

#include <string>

#include "interface/host_library.h"
#include "support/bitmaps.h"
#include "support/test_files.h"

namespace talvek::test {
namespace {

constexpr const char* kStone = "v 0 0 1\nv 10 0 1\nv 0 10 1\nvt 0.1 0.1\nvt 0.3 0.1\nvt 0.1 0.3\nf 1/1 2/2 3/3\n";

class ModeLog : public ::testing::Test {
  protected:
    void SetUp() override {
        resetSession();
        writeFile(mesh_, kStone);
    }
    void TearDown() override { resetSession(); }

    /// Runs two epochs and returns the run log.
    std::string logOf(std::int32_t mode, std::int32_t model) {
        EXPECT_EQ(TALVEK_CALL(talvekSetFileName)(mesh_.c_str()), TALVEK_OK);
        EXPECT_EQ(TALVEK_CALL(talvekSetTimeSpan)(2, 365), TALVEK_OK);
        EXPECT_EQ(TALVEK_CALL(talvekSetMode)(mode), TALVEK_OK);
        EXPECT_EQ(TALVEK_CALL(talvekSetModel)(model), TALVEK_OK);
        EXPECT_EQ(TALVEK_CALL(talvekInit)(), TALVEK_OK);
        EXPECT_EQ(TALVEK_CALL(talvekSetEpochTimeSpan)(2, 10), TALVEK_OK);
        EXPECT_EQ(TALVEK_CALL(talvekStart)(), TALVEK_OK);
        return readText(folder_.file("stone.inf"));
    }

    std::string opening(const std::string& mode, const std::string& model) const {
        return "\nInitializing Talvek Session for " + mesh_ + " ...\n\tTalvek Engine  v 2.02\n" +
               "\nComputing Weathering on " + mesh_ + " ...\nOperating mode: " + mode + "\nWeathering model: " + model +
               "\n\nLoading File " + mesh_ +
               " ...\n\tMesh loaded!\n\tFaces=1\tVertices=3\tTexels=3\n\tObj_CM=[3.33,3.33,1.00]\n"
               "\tObj_mean_edge_length=11.38 (mm)\n"
               "\tXmin=0.00 Xmax=10.00 Ymin=0.00 Ymax=10.00 Zmin=1.00 Zmax=1.00\n";
    }
    std::string closing() const {
        return "\nFile " + mesh_ + " processed.\n\nClosing Talvek Session for " + mesh_ + " ...\n";
    }

    TempFolder folder_;
    std::string mesh_ = folder_.file("stone.obj");
};

constexpr const char* kMaterial =
    "\nMaterial parameters:\nDe: 0.14\tDen: 0.11\tHd: 544.30\tKs: 312.00\nKsn: 375.00\tKr: 2452.00\tMb: 100.90\t"
    "Db: 2.71\n";
constexpr const char* kSaving = "\nSaving output object files...\n";
constexpr const char* kFirstEpoch =
    "\nepoch: 1\tdays: 365\nSO2: 4.09\tNO2: 10.23\tRv: 1.13\tRpH: 4.50\ndelta = -0.0170\n";
constexpr const char* kSecondEpoch =
    "\nepoch: 2\tdays: 10\nSO2: 4.09\tNO2: 10.23\tRv: 1.13\tRpH: 4.50\ndelta = -0.0005\n";

TEST_F(ModeLog, OfOffsetting) {
    const std::string log = logOf(TALVEK_MODE_OFFSETTING, TALVEK_MODEL_RANDOM_OFFSET);
    EXPECT_EQ(log, opening("Mesh Offsetting.", "Random offsetting.") +
                       "\tShape Index created!\n\nEnvironmental parameters for 2 epoch(s):\n"
                       "\nepoch: 1\tdays: 365\noffset per day: -0.004000\ndelta const= -1.460000\n"
                       "delta mean= -1.460000\ndelta sigma = 0.730000\ndelta smooth = -0.073000\n" +
                       kSaving +
                       "\nepoch: 2\tdays: 10\noffset per day: -0.004000\ndelta const= -0.040000\n"
                       "delta mean= -0.040000\ndelta sigma = 0.020000\ndelta smooth = -0.002000\n" +
                       kSaving + closing());
}

TEST_F(ModeLog, OfTheGridWithAMap) {
    writeFile(folder_.file("stone.bmp"), bitmapBytes(plainBitmap(2, 2, kWhite)));
    const std::string log = logOf(TALVEK_MODE_QEMSCAN, TALVEK_MODEL_ACID_RAIN);
    EXPECT_EQ(log, opening("Mesh & QEMSCAN Mineral Data.", "Recession by acid rain due to SO2+NO2+CO2.") + kMaterial +
                       "\nMineral map " + folder_.file("stone.bmp") +
                       " loaded!\n\tStone will be considered inhomogeneous.\n"
                       "\nEnvironmental parameters for 2 epoch(s):\n" +
                       kFirstEpoch + kSecondEpoch + closing());
}

TEST_F(ModeLog, OfTheGridWithoutAMap) {
    const std::string log = logOf(TALVEK_MODE_QEMSCAN, TALVEK_MODEL_SO2_CRUST);
    EXPECT_TRUE(log.starts_with(opening("Mesh & QEMSCAN Mineral Data.", "Dry deposition of crust due to SO2.") +
                                kMaterial + "\nMineral map " + folder_.file("stone.bmp") +
                                " NOT loaded!\n\tStone will be considered homogeneous.\n"))
        << log;
}

TEST_F(ModeLog, OfMineralsWithAMap) {
    writeFile(folder_.file("stone.bmp"), bitmapBytes(plainBitmap(2, 2, kWhite)));
    const std::string log = logOf(TALVEK_MODE_GRAIN_WEAVER, TALVEK_MODEL_ACID_RAIN);
    EXPECT_EQ(log, opening("Mesh & Grain-Weaver Mineral Data.", "Recession by acid rain due to SO2+NO2+CO2.") +
                       kMaterial + "\nMineral map " + folder_.file("stone.bmp") +
                       " loaded!\n\tStone will be considered inhomogeneous.\n"
                       "\nEnvironmental parameters for 2 epoch(s):\n" +
                       kFirstEpoch + kSaving + kSecondEpoch + kSaving + closing());
}

TEST_F(ModeLog, OfMineralsWithoutAMap) {
    const std::string log = logOf(TALVEK_MODE_GRAIN_WEAVER, TALVEK_MODEL_ACID_RAIN);
    EXPECT_EQ(log, opening("Mesh & Grain-Weaver Mineral Data.", "Recession by acid rain due to SO2+NO2+CO2.") +
                       kMaterial + "\nMineral map " + folder_.file("stone.bmp") +
                       " NOT loaded!\n\tStone will be considered homogeneous.\n"
                       "\nEnvironmental parameters for 2 epoch(s):\n" +
                       kFirstEpoch + kSaving + kSecondEpoch + kSaving + closing());
}

TEST_F(ModeLog, OfAMeshWithoutFacesInTheOffsettingMode) {
    writeFile(mesh_, "v 0 0 0\nv 1 0 0\nv 0 1 0\n");
    ASSERT_EQ(TALVEK_CALL(talvekSetFileName)(mesh_.c_str()), TALVEK_OK);
    ASSERT_EQ(TALVEK_CALL(talvekInit)(), TALVEK_OK);
    const std::int32_t status = TALVEK_CALL(talvekGetStatus)();
    EXPECT_EQ(TALVEK_CALL(talvekStart)(), TALVEK_ERROR_MESH);
    EXPECT_EQ(TALVEK_CALL(talvekGetStatus)(), status);
    EXPECT_TRUE(readText(folder_.file("stone.inf"))
                    .ends_with("ShapeIndex::ShapeIndex: object must have > 0 triangles\nProcessing ABORTED!\n"));
}

}  // namespace
}  // namespace talvek::test
