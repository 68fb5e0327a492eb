// The record that a run leaves: what is written is what is read.
#include "talvek/results/run_record.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "support/test_files.h"
#include "talvek/support/exit_status.h"

namespace talvek::test {
namespace {

host::RunRecord fullRecord() {
    host::RunRecord record;
    record.program = "talvek 9.9.9";
    record.begun = "2026-01-31T12:00:00Z";
    record.ended = "2026-01-31T12:00:01Z";
    record.outcome = host::RunOutcome::kCancelled;
    record.source = {"/archive/stone \xC5\x9F.glb", 123, "ab"};
    record.engineMesh = {"stone.obj", 456, "cd"};
    record.mineralMap = {"stone.bmp", 7, ""};
    record.unit = "m";
    record.offset = {1, -2.5, 1e9};
    record.mode = TALVEK_MODE_MESH_DATA;
    record.model = TALVEK_MODEL_SO2_CRUST;
    record.material = {0.1, 0.2, 0.3, 0.4, 0.5, 0.6, 0.7, 1.0 / 3};
    record.epochs.resize(2);
    record.epochs[0] = {365.25, "1990-01-01", "1990-12-31", "as \"measured\"", {4.09e-13, 1e-12, 1.13, 4.5}, 0.1, {},
                        {}};
    record.epochs[1].frame = {"stone.obj.obj_w_2.obj", 99, "ef"};
    record.epochs[1].figures = host::SurfaceFigures{-1, -1.5, -2, 0.5, {1, 2, 3, 4, 5, 6, 7}, 1000, 2.0};
    record.figures = record.epochs[1].figures;
    record.warnings = {"one", "two"};
    return record;
}

TEST(RunRecord, IsReadAsItWasWritten) {
    TempFolder folder;
    const host::RunRecord record = fullRecord();
    host::writeRunRecord(record, folder.file("run.json"));
    const host::RunRecord read = host::readRunRecord(folder.file("run.json"));
    host::writeRunRecord(read, folder.file("again.json"));
    EXPECT_EQ(readFile(folder.file("run.json")), readFile(folder.file("again.json")));
    EXPECT_EQ(read.outcome, record.outcome);
    EXPECT_EQ(read.source.path, record.source.path);
    EXPECT_EQ(read.engineMesh.bytes, 456U);
    EXPECT_EQ(read.material, record.material);
    EXPECT_EQ(read.offset, record.offset);
    EXPECT_EQ(read.epochs[0].values, record.epochs[0].values);
    EXPECT_EQ(read.epochs[0].delta, 0.1);
    EXPECT_EQ(read.epochs[0].note, record.epochs[0].note);
    EXPECT_FALSE(read.epochs[1].delta);
    EXPECT_EQ(read.epochs[1].figures->percentiles, record.epochs[1].figures->percentiles);
    EXPECT_EQ(read.warnings, record.warnings);
}

TEST(RunRecord, NumbersThatJsonDoesNotHaveAreNull) {
    TempFolder folder;
    host::RunRecord record = fullRecord();
    record.material[0] = std::numeric_limits<double>::infinity();
    host::writeRunRecord(record, folder.file("run.json"));
    EXPECT_TRUE(std::isnan(host::readRunRecord(folder.file("run.json")).material[0]));
}

std::string complaintAbout(const std::string& text) {
    TempFolder folder;
    writeFile(folder.file("run.json"), text);
    try {
        host::readRunRecord(folder.file("run.json"));
    } catch (const host::Failure& failure) {
        EXPECT_EQ(failure.status(), host::kExitParameters);
        return failure.what();
    }
    return "none";
}

TEST(RunRecord, OtherFilesAreToldFromRecords) {
    EXPECT_NE(complaintAbout("v 0 0 0\n").find("no record of a run"), std::string::npos);
    EXPECT_NE(complaintAbout("[]").find("no record of a run"), std::string::npos);
    EXPECT_NE(complaintAbout("{}").find("talvek-run"), std::string::npos);
    EXPECT_NE(complaintAbout(R"({"schema": "talvek-run", "version": 99})").find("use a later one"), std::string::npos);
    EXPECT_NE(complaintAbout(R"({"schema": "talvek-run", "version": 1})").find("key"), std::string::npos);
}

TEST(RunRecord, PathsGoWithTheFolder) {
    TempFolder folder;
    const std::string record = folder.file("runs/run.json");
    EXPECT_EQ(host::recordedPath(folder.file("runs/stone.obj"), record), "stone.obj");
    EXPECT_EQ(host::recordedPath("", record), "");
    const std::string outside = host::recordedPath(folder.file("stone.obj"), record);
    writeFile(folder.file("stone.obj"), "stone");
    EXPECT_EQ(readFile(host::pathOfRecorded(outside, "elsewhere/run.json")), "stone");
    writeFile(folder.file("frame.obj"), "frame");
    EXPECT_EQ(readFile(host::pathOfRecorded("frame.obj", folder.file("run.json"))), "frame");
}

}  // namespace
}  // namespace talvek::test
