#include "support/error_reports.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <regex>
#include <sstream>

#include "support/test_files.h"

namespace talvek::test {

namespace {

/// The text behind the prefix of a report line; the prefix, without its time, in `prefix`.
std::string messageOf(const std::string& line, std::string& prefix) {
    static const std::regex kLine(R"(\(\d\d:\d\d:\d\d\) (\S+:\d+) >> (.*))");
    std::smatch parts;
    EXPECT_TRUE(std::regex_match(line, parts, kLine)) << line;
    prefix = parts[1];
    return parts[2];
}

}  // namespace

CaughtReports::CaughtReports() {
    ::testing::internal::CaptureStderr();
}

CaughtReports::~CaughtReports() {
    if (isOpen_) {
        lines();
    }
}

std::vector<std::string> CaughtReports::lines() {
    isOpen_ = false;
    std::istringstream text(withoutCarriageReturns(::testing::internal::GetCapturedStderr()));
    std::vector<std::string> lines;
    for (std::string line; std::getline(text, line);) {
        lines.push_back(line);
    }
    return lines;
}

void expectReportBlock(const std::vector<std::string>& lines, const std::string& source, const std::string& message) {
    ASSERT_EQ(lines.size(), 3) << ::testing::PrintToString(lines);
    std::string prefix;
    EXPECT_EQ(messageOf(lines[0], prefix), "ERROR INFORMATION BELOW");
    EXPECT_EQ(prefix.substr(0, prefix.find(':')), source);
    std::string other;
    EXPECT_EQ(messageOf(lines[1], other), "Current dir: " + std::filesystem::current_path().string());
    EXPECT_EQ(other, prefix);
    EXPECT_EQ(messageOf(lines[2], other), message);
    EXPECT_EQ(other, prefix);
}

bool isTimeOfDay(const std::string& text) {
    static const std::regex kTime("([01][0-9]|2[0-3]):[0-5][0-9]:([0-5][0-9]|60)");
    return std::regex_match(text, kTime);
}

std::string comparableReport(const std::string& report) {
    static const std::regex kPrefix(R"(\(\d\d:\d\d:\d\d\) (\S+):\d+ >> )");
    return std::regex_replace(withoutCarriageReturns(report), kPrefix, "(TIME) $1:LINE >> ");
}

}  // namespace talvek::test
