// What readers write to standard error.
#pragma once

#include <string>
#include <vector>

namespace talvek::test {

/// Catches standard error from now on; lines() ends that and gives what came, without line ends.
class CaughtReports {
  public:
    CaughtReports();
    CaughtReports(const CaughtReports&) = delete;
    CaughtReports& operator=(const CaughtReports&) = delete;
    ~CaughtReports();

    std::vector<std::string> lines();

  private:
    bool isOpen_ = true;
};

/// Fails the test unless the lines are one report block made in this source file: three lines of the same time, source
/// and line number, which announce, name the working directory, and say `message`.
void expectReportBlock(const std::vector<std::string>& lines, const std::string& source, const std::string& message);

/// Whether the text is the time of a day, "HH:MM:SS".
bool isTimeOfDay(const std::string& text);

/// A report with "(TIME)" for the time of each line and "LINE" for the number of the source line.
std::string comparableReport(const std::string& report);

}  // namespace talvek::test
