// The numbers that the pages on the models and on their inputs give.
#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <sstream>

#include "support/test_files.h"
#include "weathering/rates.h"

namespace talvek::test {
namespace {

using Row = std::vector<std::string>;

/// The cells of the table below the line that begins so, without the line of dashes.
std::vector<Row> tableBelow(const std::string& page, const std::string& beginning) {
    std::ifstream file(std::string(TALVEK_DOCUMENTS) + "/" + page);
    std::vector<Row> rows;
    bool isInTable = false;
    for (std::string line; std::getline(file, line);) {
        line = withoutCarriageReturns(line);
        const bool isRow = isInTable && line.starts_with("|");
        if (isRow && !line.starts_with("|---")) {
            Row& row = rows.emplace_back();
            std::istringstream cells(line.substr(1));
            for (std::string cell; std::getline(cells, cell, '|');) {
                row.push_back(cell);
            }
        }
        isInTable = isRow || line.starts_with(beginning);
    }
    return rows;
}

/// Half a unit of the last digit that a number shows.
double halfOfLastDigit(const std::string& number) {
    const std::size_t end = std::min(number.find('e'), number.find_last_not_of(' ') + 1);
    const std::size_t point = number.find('.');
    const double digits = point == std::string::npos ? 0 : static_cast<double>(end - point - 1);
    const double exponent = number.find('e') == std::string::npos ? 0 : std::stod(number.substr(number.find('e') + 1));
    return 0.5000001 * std::pow(10, exponent - digits);
}

void expectShown(const std::string& shown, double value, const std::string& what) {
    EXPECT_NEAR(value, std::stod(shown), halfOfLastDigit(shown)) << what;
}

TEST(ModelPage, ShowsTheDistancesOfTheModels) {
    const MaterialRecord material = {{0.14F, 0.11F, 544.3F, 312, 375, 2452, 100.9F, 2.714F}};
    const std::vector<Row> rows = tableBelow("model.md", "| model | days |");
    ASSERT_EQ(rows.size(), 10U);
    for (const Row& row : rows) {
        const EpochRecord epoch = {
            {std::stod(row[1]), std::stod(row[2]), std::stod(row[3]), std::stod(row[4]), std::stod(row[5])}};
        const double micrometres = 1000 * weatheringDelta(material, epoch, std::stoi(row[0]));
        expectShown(row[6], micrometres, "model" + row[0] + "over" + row[1] + "days");
    }
}

TEST(RainAndAirPage, ShowsTheMeanPh) {
    double acid = 0;
    double rain = 0;
    for (const Row& row : tableBelow("rain-and-air.md", "| rain in mm | pH |")) {
        acid += std::stod(row[0]) * std::pow(10, -std::stod(row[1]));
        rain += std::stod(row[0]);
    }
    const std::string page = readText(std::string(TALVEK_DOCUMENTS) + "/rain-and-air.md");
    const std::string sentence = "The volume-weighted mean pH of these is ";
    ASSERT_NE(page.find(sentence), std::string::npos);
    expectShown(page.substr(page.find(sentence) + sentence.size(), 4), -std::log10(acid / rain), "mean pH");
}

TEST(RainAndAirPage, ShowsConcentrations) {
    constexpr double kSulphur = 32.06;
    constexpr double kNitrogen = 14.007;
    constexpr double kTwoOxygens = 2 * 15.999;
    // Of a mole of gas at 25 degrees Celsius and 1 atm, in cm3.
    constexpr double kVolume = 8.314462618 * 298.15 / 101325 * 1e6;
    const double expected[3][2] = {{1e-12 / (kSulphur + kTwoOxygens), 1e-12 / (kNitrogen + kTwoOxygens)},
                                   {1e-12 / kSulphur, 1e-12 / kNitrogen},
                                   {1e-9 / kVolume, 1e-9 / kVolume}};
    const std::vector<Row> rows = tableBelow("rain-and-air.md", "| 1 of |");
    ASSERT_EQ(rows.size(), 3U);
    for (std::size_t i = 0; i < rows.size(); ++i) {
        expectShown(rows[i][1], expected[i][0], rows[i][0] + "of SO2");
        expectShown(rows[i][2], expected[i][1], rows[i][0] + "of NO2");
    }
}

}  // namespace
}  // namespace talvek::test
