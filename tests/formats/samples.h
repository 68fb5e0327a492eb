// A small sound file of each format, with all that its reader knows.
#pragma once

#include <string>
#include <vector>

namespace talvek::test {

struct Sample {
    std::string title;
    std::string name;
    std::string bytes;
};

std::vector<Sample> samples();

}  // namespace talvek::test
