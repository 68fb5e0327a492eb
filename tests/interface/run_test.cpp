// Runs of the loaded library, from the host's first call to the frames: logs and frames to the letter.
#include <thread>

#include "interface/host_session.h"

namespace talvek::test {
namespace {

constexpr std::string_view kRightTriangle = "v 0 0 0\nv 3 0 0\nv 0 4 0\nvt 0 0\nf 1 2 3\n";

class Run : public HostSession {
  protected:
    std::string announcement() const {
        return "\nInitializing Talvek Session for " + mesh_ +
               " ...\n\tTalvek Engine  v 2.02\n\nComputing Weathering on " + mesh_ + " ...\n";
    }
    std::string loading() const { return "\nLoading File " + mesh_ + " ...\n"; }
    std::string end() const {
        return "\nFile " + mesh_ + " processed.\n\nClosing Talvek Session for " + mesh_ + " ...\n";
    }

    /// The lines between the operating mode and the first epoch, for kRightTriangle.
    std::string statistics(const std::string& modelLine) const {
        return "Operating mode: Mesh Data only.\nWeathering model: " + modelLine + "\n" + loading() +
               "\tMesh loaded!\n\tFaces=1\tVertices=3\tTexels=1\n\tObj_CM=[1.00,1.33,0.00]\n"
               "\tObj_mean_edge_length=4.00 (mm)\n"
               "\tXmin=0.00 Xmax=3.00 Ymin=0.00 Ymax=4.00 Zmin=0.00 Zmax=0.00\n"
               "\nMaterial parameters:\n"
               "De: 0.14\tDen: 0.11\tHd: 544.30\tKs: 312.00\nKsn: 375.00\tKr: 2452.00\tMb: 100.90\tDb: 2.71\n";
    }

    static std::string epochLines(int number, const std::string& days, const std::string& delta) {
        return "\nepoch: " + std::to_string(number) + "\tdays: " + days +
               "\nSO2: 4.09\tNO2: 10.23\tRv: 1.13\tRpH: 4.50\ndelta = " + delta + "\n\nSaving output object files...\n";
    }

    void expectLog(std::int32_t model, const std::string& modelLine, const std::string& delta) {
        nameMesh(kRightTriangle);
        setUp(TALVEK_MODE_MESH_DATA, model, 2, 365);
        ASSERT_EQ(start(), TALVEK_OK);
        EXPECT_EQ(text("stone.inf"), announcement() + statistics(modelLine) +
                                         "\nEnvironmental parameters for 2 epoch(s):\n" + epochLines(1, "365", delta) +
                                         epochLines(2, "365", delta) + end());
        EXPECT_EQ(output(), text("stone.inf"));
    }

    /// A run that is refused: its last lines, its result, and everything that must not change.
    void expectAbort(std::int32_t result, const std::string& lines) {
        const std::int32_t status = TALVEK_CALL(talvekGetStatus)();
        EXPECT_EQ(start(), result);
        EXPECT_EQ(text("stone.inf"), announcement() + lines + "\nProcessing ABORTED!\n");
        EXPECT_EQ(output(), text("stone.inf"));
        EXPECT_EQ(TALVEK_CALL(talvekGetStatus)(), status);
        EXPECT_EQ(folder_.listing(), "stone.inf stone.obj");
    }
};

TEST_F(Run, LogsTheSo2Crust) {
    expectLog(TALVEK_MODEL_SO2_CRUST, "Dry deposition of crust due to SO2.", "0.0003");
}

TEST_F(Run, LogsTheSo2No2Crust) {
    expectLog(TALVEK_MODEL_SO2_NO2_CRUST, "Dry deposition of crust due to SO2+NO2.", "0.0020");
}

TEST_F(Run, LogsAcidRain) {
    expectLog(TALVEK_MODEL_ACID_RAIN, "Recession by acid rain due to SO2+NO2+CO2.", "-0.0170");
}

TEST_F(Run, LogsMinusZero) {
    nameMesh(kRightTriangle);
    setUp(TALVEK_MODE_MESH_DATA, TALVEK_MODEL_ACID_RAIN, 1, 7);
    const float nothing[4] = {0, 0, 0, 4.5F};
    ASSERT_EQ(TALVEK_CALL(talvekSetEpochParams)(0, nothing), TALVEK_OK);
    ASSERT_EQ(start(), TALVEK_OK);
    EXPECT_NE(output().find("SO2: 0.00\tNO2: 0.00\tRv: 0.00\tRpH: 4.50\ndelta = -0.0000\n"), std::string::npos);
}

TEST_F(Run, MovesATriangleAlongItsNormal) {
    nameMesh(kTriangleText);
    setUp(TALVEK_MODE_MESH_DATA, TALVEK_MODEL_ACID_RAIN, 2);
    ASSERT_EQ(start(), TALVEK_OK);
    EXPECT_EQ(TALVEK_CALL(talvekGetStatus)(), TALVEK_STATUS_FINISHED);
    EXPECT_EQ(folder_.listing(),
              "stone.inf stone.obj stone.obj.obj_i.obj stone.obj.obj_w.obj stone.obj.obj_w_1.obj "
              "stone.obj.obj_w_2.obj");
    Floats vertices(9);
    Floats normals(9);
    ASSERT_EQ(TALVEK_CALL(talvekGetFrameGeometry)(2, vertices.data(), normals.data()), TALVEK_OK);
    EXPECT_LT(vertices[2], 0);
    EXPECT_EQ(normals[2], 1);
}

std::string triangleFrame(const std::string& z) {
    const std::string normal = "vn 0.000000 0.000000 1.000000\n";
    return "#\n# Obj file created by QN Lib\n#\n# 3 vertices\n# 3 normals\nv 0.000000 0.000000 " + z + "\n" + normal +
           "v 1.000000 0.000000 " + z + "\n" + normal + "v 0.000000 1.000000 " + z + "\n" + normal +
           "# 1 triangles\nf 1 2 3\n";
}

TEST_F(Run, WritesItsFramesToTheLetter) {
    nameMesh(kTriangleText);
    setUp(TALVEK_MODE_MESH_DATA, TALVEK_MODEL_ACID_RAIN, 2);
    ASSERT_EQ(start(), TALVEK_OK);
    EXPECT_EQ(text("stone.obj.obj_i.obj"), triangleFrame("0.000000"));
    EXPECT_EQ(text("stone.obj.obj_w_1.obj"), triangleFrame("-0.016991"));
    EXPECT_EQ(text("stone.obj.obj_w_2.obj"), triangleFrame("-0.033983"));
    EXPECT_EQ(text("stone.obj.obj_w.obj"), triangleFrame("-0.033983"));
}

TEST_F(Run, WritesFrameZeroUnderTheResultsFlag) {
    nameMesh(kTriangleText);
    setUp(TALVEK_MODE_MESH_DATA, TALVEK_MODEL_SO2_CRUST, 1);
    ASSERT_EQ(TALVEK_CALL(talvekSetResults)(1), TALVEK_OK);
    ASSERT_EQ(start(), TALVEK_OK);
    EXPECT_EQ(folder_.listing(),
              "stone.inf stone.obj stone.obj.obj_i.obj stone.obj.obj_w.obj stone.obj.obj_w_0.obj "
              "stone.obj.obj_w_1.obj");
    EXPECT_EQ(text("stone.obj.obj_w_0.obj"), text("stone.obj.obj_i.obj"));
    EXPECT_EQ(text("stone.obj.obj_w_1.obj"), triangleFrame("0.000259"));
}

TEST_F(Run, TheSecondTruncatesTheLogOfTheFirst) {
    nameMesh(kTriangleText);
    setUp(TALVEK_MODE_MESH_DATA, TALVEK_MODEL_ACID_RAIN, 5);
    ASSERT_EQ(start(), TALVEK_OK);
    const std::string first = text("stone.inf");
    ASSERT_EQ(TALVEK_CALL(talvekSetNumEpochs)(1), TALVEK_OK);
    ASSERT_EQ(start(), TALVEK_OK);
    EXPECT_LT(text("stone.inf").size(), first.size());
    EXPECT_EQ(text("stone.inf").find("Initializing"), text("stone.inf").rfind("Initializing"));
    EXPECT_NE(text("stone.inf").find("for 1 epoch(s)"), std::string::npos);
}

TEST_F(Run, StartsFromTheInputEveryTime) {
    nameMesh(kTriangleText);
    setUp(TALVEK_MODE_MESH_DATA, TALVEK_MODEL_ACID_RAIN, 1);
    ASSERT_EQ(start(), TALVEK_OK);
    const std::string first = text("stone.obj.obj_w_1.obj");
    ASSERT_EQ(start(), TALVEK_OK);
    EXPECT_EQ(text("stone.obj.obj_w_1.obj"), first);
    EXPECT_EQ(text("stone.obj"), kTriangleText);
}

TEST_F(Run, WithoutEpochsWritesTheSummaryAlone) {
    nameMesh(kTriangleText);
    writeFile(folder_.file("stone.cfg"), "mode = 1;\nmodel = 3;\nepcs = 0;\n");
    ASSERT_EQ(TALVEK_CALL(talvekReadParams)(), TALVEK_OK);
    ASSERT_EQ(start(), TALVEK_OK);
    EXPECT_EQ(folder_.listing(), "stone.cfg stone.inf stone.obj stone.obj.obj_i.obj stone.obj.obj_w.obj");
    EXPECT_EQ(text("stone.obj.obj_i.obj"), text("stone.obj.obj_w.obj"));
    EXPECT_NE(output().find("\nEnvironmental parameters for 0 epoch(s):\n" + end()), std::string::npos);
}

TEST_F(Run, OfAnEmptyMeshPrintsWhatTheArithmeticGives) {
    nameMesh("# nothing\n");
    setUp(TALVEK_MODE_MESH_DATA, TALVEK_MODEL_ACID_RAIN);
    ASSERT_EQ(start(), TALVEK_OK);
    EXPECT_NE(output().find("\tFaces=0\tVertices=0\tTexels=0\n\tObj_CM=[-nan,-nan,-nan]\n"
                            "\tObj_mean_edge_length=-nan (mm)\n"
                            "\tXmin=0.00 Xmax=0.00 Ymin=0.00 Ymax=0.00 Zmin=0.00 Zmax=0.00\n"),
              std::string::npos)
        << output();
    EXPECT_EQ(text("stone.obj.obj_w_1.obj"),
              "#\n# Obj file created by QN Lib\n#\n# 0 vertices\n# 0 normals\n# 0 triangles\n");
}

TEST_F(Run, IsRefusedForAnUndefinedModel) {
    nameMesh(kTriangleText);
    setUp(TALVEK_MODE_MESH_DATA, 0);
    expectAbort(TALVEK_ERROR_UNDEFINED_MODEL, "Operating mode: Mesh Data only.\nWeathering model: Undefined!");
}

TEST_F(Run, IsRefusedForAnUndefinedModelInEveryMode) {
    const char* const modeLines[] = {"Mesh Offsetting", "Mesh Data only", "Mesh & QEMSCAN Mineral Data",
                                     "Mesh & Grain-Weaver Mineral Data"};
    nameMesh(kTriangleText);
    setUp(0, 0);
    for (std::int32_t mode = 0; mode < 4; ++mode) {
        TALVEK_CALL(talvekSetMode)(mode);
        TALVEK_CALL(talvekSetModel)(mode == TALVEK_MODE_OFFSETTING ? 3 : 0);
        expectAbort(TALVEK_ERROR_UNDEFINED_MODEL,
                    std::string("Operating mode: ") + modeLines[mode] + ".\nWeathering model: Undefined!");
    }
}

TEST_F(Run, IsRefusedWithoutMaterial) {
    nameMesh(kTriangleText);
    TALVEK_CALL(talvekSetMode)(1);
    TALVEK_CALL(talvekSetModel)(3);
    expectAbort(TALVEK_ERROR_NULL,
                "Operating mode: Mesh Data only.\nWeathering model: Recession by acid rain due to SO2+NO2+CO2.\n"
                "Material params undefined!");
}

TEST_F(Run, IsRefusedBeyondTheEpochsThatExist) {
    nameMesh(kTriangleText);
    setUp(1, 1, 2);
    ASSERT_EQ(TALVEK_CALL(talvekSetNumEpochs)(3), TALVEK_OK);
    expectAbort(TALVEK_ERROR_NULL,
                "Operating mode: Mesh Data only.\nWeathering model: Dry deposition of crust due to SO2.\n"
                "Envirinmetal params undefined!");
}

TEST_F(Run, IsRefusedWithoutAMesh) {
    nameMesh("f 1 2 3\n");
    setUp(1, 2);
    ::testing::internal::CaptureStderr();
    expectAbort(TALVEK_ERROR_MESH,
                "Operating mode: Mesh Data only.\nWeathering model: Dry deposition of crust due to SO2+NO2.\n" +
                    loading() + "\tMesh NOT loaded!");
    EXPECT_NE(::testing::internal::GetCapturedStderr().find("face index out of range in " + mesh_), std::string::npos);
}

TEST_F(Run, IsRefusedForAnUnknownExtension) {
    nameMesh(kTriangleText, "stone.Obj");
    setUp(1, 2);
    EXPECT_EQ(start(), TALVEK_ERROR_MESH);
    EXPECT_TRUE(output().ends_with("\tMesh NOT loaded!\nProcessing ABORTED!\n"));
}

TEST_F(Run, AnUndefinedModelComesBeforeMissingStores) {
    nameMesh(kTriangleText);
    TALVEK_CALL(talvekSetMode)(1);
    EXPECT_EQ(start(), TALVEK_ERROR_UNDEFINED_MODEL);
}

TEST_F(Run, MissingStoresComeBeforeAMissingMesh) {
    ASSERT_EQ(TALVEK_CALL(talvekSetFileName)(folder_.file("absent.obj").c_str()), TALVEK_OK);
    TALVEK_CALL(talvekSetMode)(1);
    TALVEK_CALL(talvekSetModel)(3);
    EXPECT_EQ(start(), TALVEK_ERROR_NULL);
    TALVEK_CALL(talvekInit)();
    EXPECT_EQ(start(), TALVEK_ERROR_MESH);
}

TEST_F(Run, GoesOnWithoutALogThatCannotBeCreated) {
    std::filesystem::create_directory(folder_.file("stone.inf"));
    nameMesh(kTriangleText);
    setUp(1, 3);
    EXPECT_EQ(start(), TALVEK_OK);
    EXPECT_TRUE(output().ends_with(end()));
    EXPECT_TRUE(exists(folder_.file("stone.obj.obj_w_1.obj")));
}

TEST_F(Run, TwoPercentSignsOfANameArePrintedAsOne) {
    nameMesh(kTriangleText, "100%%s%d.obj");
    setUp(1, 3);
    ASSERT_EQ(start(), TALVEK_OK);
    EXPECT_NE(output().find("100%s%d.obj processed.\n"), std::string::npos);
    EXPECT_TRUE(exists(folder_.file("100%%s%d.obj.obj_w_1.obj")));
    EXPECT_EQ(text("100%%s%d.inf"), output());
}

TEST_F(Run, AFrameThatCannotBeWrittenDoesNotStopIt) {
    nameMesh(kTriangleText);
    std::filesystem::create_directory(folder_.file("stone.obj.obj_w_1.obj"));
    setUp(1, 3, 2);
    EXPECT_EQ(start(), TALVEK_OK);
    EXPECT_EQ(TALVEK_CALL(talvekGetFrameNumTriangles)(1), 0);
    EXPECT_EQ(TALVEK_CALL(talvekGetFrameNumTriangles)(2), 1);
}

TEST_F(Run, AnInfiniteDeltaIsAppliedAsItIs) {
    nameMesh(kTriangleText);
    setUp(1, 3);
    Floats stone = material();
    stone[7] = 0;
    ASSERT_EQ(TALVEK_CALL(talvekSetMaterialParams)(stone.data()), TALVEK_OK);
    ASSERT_EQ(start(), TALVEK_OK);
    EXPECT_NE(output().find("delta = -inf\n"), std::string::npos);
    EXPECT_NE(text("stone.obj.obj_w_1.obj").find("-inf\n"), std::string::npos);
}

TEST_F(Run, StatusAndStopMayBeUsedFromAnotherThread) {
    nameMesh(kTriangleText);
    setUp(1, 3, 300, 1);
    std::atomic<bool> isOver = false;
    bool areValid = true;
    std::thread watcher([&] {
        while (!isOver) {
            const std::int32_t status = TALVEK_CALL(talvekGetStatus)();
            areValid = areValid && status >= 0 && status <= 4 && status != 3;
            TALVEK_CALL(talvekStop)();
        }
    });
    EXPECT_EQ(start(), TALVEK_OK);
    isOver = true;
    watcher.join();
    EXPECT_TRUE(areValid);
    EXPECT_TRUE(exists(folder_.file("stone.obj.obj_w_300.obj"))) << "a stop does not cut a run short";
}

}  // namespace
}  // namespace talvek::test
