// Parts of the program that its output alone does not show closely enough.
#include <gtest/gtest.h>

#include <filesystem>

#include "Vexo_Lib/load3d.h"
#include "Vexo_Lib/obj.h"
#include "support/meshes.h"
#include "support/test_files.h"
#include "talvek/plan/parameter_source.h"
#include "talvek/plan/run_files.h"
#include "talvek/plan/session_plan.h"
#include "talvek/preflight/frame_size.h"
#include "talvek/preflight/movement_warnings.h"
#include "talvek/preflight/preflight.h"
#include "talvek/support/exit_status.h"
#include "talvek/support/messages.h"
#include "talvek/watch/frame_check.h"
#include "talvek/watch/progress.h"

namespace talvek::test {
namespace {

TEST(FrameSize, IsThatOfTheWrittenFrameApartFromItsHead) {
    TempFolder folder;
    const auto mesh = makeSphere(123.4F, 3);
    mesh->updateNormals(true);
    ASSERT_TRUE(WriteObjFileWithNormals(*mesh, folder.file("frame.obj").c_str()));
    const auto written = static_cast<double>(std::filesystem::file_size(folder.file("frame.obj")));
    EXPECT_NEAR(static_cast<double>(host::frameBytes(*mesh)), written, 100);
}

TEST(FrameSize, ReplacedFilesGiveTheirRoomBack) {
    TempFolder folder;
    writeFile(folder.file("old"), std::string(30, 'x'));
    writeFile(folder.file("longer"), std::string(300, 'x'));
    // One surface is always written beside what it replaces.
    EXPECT_EQ(host::roomNeeded({folder.file("new")}, 100), 200U);
    EXPECT_EQ(host::roomNeeded({folder.file("new"), folder.file("old"), folder.file("longer")}, 100), 100U + 100 + 70);
}

/// A run on the grid can lose its last vertices on the way, which no look at the input tells.
TEST(FrameCheck, FrameWithoutVerticesIsTold) {
    TempFolder folder;
    const std::string name = folder.file("frame.obj");
    host::FrameCheck frames({name}, std::nullopt);
    writeFile(name, "# 0 vertices\n");
    try {
        frames.check(name);
        FAIL();
    } catch (const host::Failure& failure) {
        EXPECT_EQ(failure.status(), host::kExitNoVertices);
        EXPECT_NE(std::string(failure.what()).find("the frame holds no vertices"), std::string::npos);
    }
}

host::SessionPlan planOf(std::size_t epochs) {
    host::SessionPlan plan;
    plan.mode = TALVEK_MODE_MESH_DATA;
    plan.model = TALVEK_MODEL_ACID_RAIN;
    plan.material = {{0.14F, 0.11F, 544.3F, 312, 375, 2452, 100.9F, 2.714F}};
    plan.epochs.assign(epochs,
                       {.record = {{365, 4.09e-13F, 1.023e-12F, 1.13F, 4.5}}, .start = {}, .end = {}, .note = {}});
    return plan;
}

host::PreparedRun runOf(const std::string& meshFile, std::size_t epochs, std::unique_ptr<Object3D> mesh) {
    host::PreparedRun run;
    run.files = host::RunFiles(meshFile);
    run.plan = planOf(epochs);
    run.mesh = std::move(mesh);
    return run;
}

std::string refusalOf(host::PreparedRun run) {
    try {
        host::requireRoom(run);
    } catch (const host::Failure& failure) {
        EXPECT_EQ(failure.status(), host::kExitOutput);
        return failure.what();
    }
    return "none";
}

TEST(Preflight, FolderThatTakesNoFileIsRefused) {
    TempFolder folder;
    writeFile(folder.file("nowhere"), "a file");
    EXPECT_NE(refusalOf(runOf(folder.file("nowhere/stone.obj"), 1, makeCube(1)))
                  .find("no file can be created in this folder"),
              std::string::npos);
}

TEST(Preflight, DiskWithoutRoomIsRefusedAndTheNeedNamed) {
    TempFolder folder;
    // A large mesh, so that not too many epochs fill the disk, and twice as many as fill it: other programs may give
    // room free meanwhile.
    auto mesh = makePlane(400);
    const std::uint64_t frames = 2 * (std::filesystem::space(folder.path()).available / host::frameBytes(*mesh) + 1);
    if (frames > 10'000'000) {
        GTEST_SKIP() << "the disk is too large";
    }
    host::PreparedRun run = runOf(folder.file("stone.obj"), frames, std::move(mesh));
    EXPECT_NE(refusalOf(run).find("make room, run fewer epochs, or keep fewer frames"), std::string::npos);
    run.frames = {.every = 0, .keepsLast = true};
    EXPECT_EQ(refusalOf(run), "none");
}

TEST(Preflight, WhatIsWrittenBesidesTheFramesNeedsRoomToo) {
    TempFolder folder;
    writeFile(folder.file("stone.obj"), "");
    std::error_code isTooLarge;
    std::filesystem::resize_file(folder.file("stone.obj"), 2 * std::filesystem::space(folder.path()).available,
                                 isTooLarge);
    if (isTooLarge) {
        GTEST_SKIP() << "no file of that size";
    }
    host::PreparedRun run = runOf(folder.file("stone.obj"), 1, makeCube(1));
    EXPECT_EQ(refusalOf(run), "none");
    run.files = host::RunFiles(folder.file("stone.obj"), folder.file("out/stone.obj"), true);
    EXPECT_NE(refusalOf(run).find("the disk has"), std::string::npos);
}

TEST(Preflight, RunFitsWhereThereIsRoom) {
    TempFolder folder;
    EXPECT_EQ(refusalOf(runOf(folder.file("stone.obj"), 2, makeCube(1))), "none");
    EXPECT_EQ(folder.listing(), "");
}

TEST(Preflight, NoWarningWhereTheMovementShows) {
    EXPECT_TRUE(host::movementWarnings(planOf(3), *makeCube(10)).empty());
}

/// The library reads the very numbers that were planned, not those that a few digits give.
TEST(SessionPlan, KeepsAllDigitsOnItsWayToTheLibrary) {
    TempFolder folder;
    host::SessionPlan plan = planOf(2);
    plan.material.values[3] = 1.0 / 3;
    plan.epochs[1].record.values = {100.5, 1.0 / 7, 4.9e-324, -1.7976931348623157e+308, -0.0};
    writeFile(folder.file("plan.cfg"), host::parameterText(plan));
    host::PlanOptions options;
    options.config = folder.file("plan.cfg");
    const host::SessionPlan again = host::readParameters(options);
    EXPECT_EQ(again.mode, plan.mode);
    EXPECT_EQ(again.model, plan.model);
    EXPECT_EQ(again.material.values, plan.material.values);
    ASSERT_EQ(again.epochs.size(), 2U);
    EXPECT_EQ(again.epochs[0].record.values, plan.epochs[0].record.values);
    EXPECT_EQ(again.epochs[1].record.values, plan.epochs[1].record.values);
}

TEST(Progress, EpochsAreReadFromTheLibrarysLines) {
    EXPECT_EQ(host::announcedEpoch("epoch: 12\tdays: 365"), 12);
    EXPECT_FALSE(host::announcedEpoch("Environmental parameters for 2 epoch(s):"));
    EXPECT_FALSE(host::announcedEpoch("epoch: \tdays"));
}

TEST(Progress, NamesEpochPercentAndRemainingTime) {
    EXPECT_EQ(host::progressText(1, 10, 0), "epoch 1 of 10, 0 %");
    EXPECT_EQ(host::progressText(3, 10, 10), "epoch 3 of 10, 20 %, 0:40 left");
    EXPECT_EQ(host::progressText(4000, 4000, 3999), "epoch 4000 of 4000, 99 %, 0:01 left");
    EXPECT_EQ(host::clockTime(3723), "1:02:03");
}

TEST(ExitStatus, EveryResultCodeHasItsOwn) {
    EXPECT_EQ(host::exitStatusOf(TALVEK_OK), 0);
    for (int code = -1; code >= -7; --code) {
        const int status = host::exitStatusOf(code);
        EXPECT_NE(host::exitStatusTable().find("\n   " + std::to_string(status) + "  "), std::string::npos) << code;
    }
}

}  // namespace
}  // namespace talvek::test
