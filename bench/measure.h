// What a measured program says about itself: processor seconds of a stretch of work, and memory.
#pragma once

#include <sys/resource.h>

#include <cstdio>
#include <cstring>

namespace talvek::bench {

/// User and system seconds of this process so far.
inline double processorSeconds() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval& t) {
        return static_cast<double>(t.tv_sec) + 1e-6 * static_cast<double>(t.tv_usec);
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

/// One of the lines of /proc/self/status that give kibibytes, in bytes; 0 when it is missing.
inline double memoryLine(const char* name) {
    double kibibytes = 0;
    std::FILE* file = std::fopen("/proc/self/status", "r");
    char line[256];
    while (file != nullptr && std::fgets(line, sizeof line, file) != nullptr) {
        if (std::strncmp(line, name, std::strlen(name)) == 0) {
            std::sscanf(line + std::strlen(name), ": %lf", &kibibytes);
        }
    }
    if (file != nullptr) {
        std::fclose(file);
    }
    return kibibytes * 1024;
}

/// Prints the processor seconds of some work and by how much the largest memory exceeds the memory before it.
template <typename Work>
void measure(const char* name, Work work) {
    const double residentBefore = memoryLine("VmRSS");
    const double before = processorSeconds();
    work();
    const double seconds = processorSeconds() - before;
    std::printf("%s %.6f %.0f\n", name, seconds, memoryLine("VmHWM") - residentBefore);
}

}  // namespace talvek::bench
