// The program that `lumbrine-headless --check` is: it asks the receiver that runs, or else looks at the computer.
#pragma once

#include <string>

namespace lumbrine {

// Prints the list of checks. Returns the exit status: 0 when nothing is wrong, else 1. Takes less than three seconds.
int checkAndPrint();

// The same, and writes the file for those who help. Where that fails, prints why, and returns 1.
int checkAndSave(const std::string& file);

} // namespace lumbrine
