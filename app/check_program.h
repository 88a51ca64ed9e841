// The program that `lumbrine-headless --check` is: it asks the receiver that runs, or else looks at the computer.
#pragma once

#include <string>

namespace lumbrine {

// Prints the list of checks, and writes the file for those who help where `report` names one. Returns the exit status:
// 0 when nothing is wrong, else 1, also when the file cannot be written. The checks take less than three seconds.
int checkAndPrint(const std::string& report = {});

} // namespace lumbrine
