// For tests: how much memory a process has.
#pragma once

#include <sys/types.h>

#include <fstream>
#include <string>

namespace lumbrine::end_to_end {

// -1 when there is no such process.
inline long residentKiB(pid_t process) {
    std::ifstream status("/proc/" + std::to_string(process) + "/status");
    for (std::string word; status >> word;)
        if (word == "VmRSS:") {
            long kib = 0;
            status >> kib;
            return kib;
        }
    return -1;
}

} // namespace lumbrine::end_to_end
