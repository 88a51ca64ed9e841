// lumbrine-headless --pair and --forget: shows and forgets the keys that clients seal with. A receiver that runs
// follows within two seconds.
#pragma once

#include <string_view>

namespace lumbrine {

// Each prints to standard output and returns the program's status.
int pairAndPrint(std::string_view keyName); // empty: the first key
int forgetAndPrint(std::string_view keyName);
int forgetAllAndPrint();

} // namespace lumbrine
