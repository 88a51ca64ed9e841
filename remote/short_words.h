// Pans, automation modes and faders as texts of a few characters, for columns.
#pragma once

#include "remote/canvas.h"

#include <string>

namespace lumbrine::remote {

std::string panInShort(int position);       // "<3" for three steps to the left, "C", "3>", "·" for a dark ring
std::string autoModeInShort(AutoMode mode); // "ltch", "Ttch"; "·" for unknown
Ink inkOf(AutoMode mode);                   // red for the modes that write
std::string faderInShort(double unit);      // "72.0", from 0 to 100

} // namespace lumbrine::remote
