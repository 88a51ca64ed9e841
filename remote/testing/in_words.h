// For tests: what a receiver has sent, as the terminal client prints it.
#pragma once

#include "remote/message_line.h"

#include <sstream>
#include <string>
#include <vector>

namespace lumbrine::remote {

// Lines of hexadecimal bytes, with a time before them or without: "600ms 01 7D" becomes "600ms busy". A line that is no
// message of a receiver stays as it is.
inline std::vector<std::string> inWords(std::vector<std::string> lines) {
    for (std::string& line : lines) {
        std::istringstream words(line);
        std::string time;
        if (line.find("ms ") != std::string::npos) words >> time;
        Bytes bytes;
        for (unsigned byte = 0; words >> std::hex >> byte;)
            bytes.push_back(static_cast<std::uint8_t>(byte));
        if (const auto message = parseReceiverMessage(bytes))
            line = (time.empty() ? "" : time + " ") + lineOf(*message);
    }
    return lines;
}

} // namespace lumbrine::remote
