// The log of macOS, where Console and `log show` find the lines of a program that nobody started in a terminal.
#pragma once

#include <string>

namespace lumbrine {

// Subsystem com.tarnwick.lumbrine, category "activity". Any thread; never waits.
void writeToSystemLog(const std::string& line);

} // namespace lumbrine
