// The program that `lumbrine-headless --check` is: it asks the receiver that runs, or else looks at the computer.
#pragma once

namespace lumbrine {

// Prints the list of checks. Returns the exit status: 0 when nothing is wrong, else 1. Takes less than three seconds.
int checkAndPrint();

} // namespace lumbrine
