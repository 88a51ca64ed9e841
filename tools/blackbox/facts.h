// What a recording tells of the host's rules that are not known for sure.
#pragma once

#include "tools/blackbox/timed_records.h"

#include <map>
#include <string>
#include <vector>

namespace lumbrine::blackbox {

struct Fact {
    std::string question;                   // "bank left"
    std::map<std::string, long> votes = {}; // answers, each with how often the recording shows it
    std::string example = {};               // where: a time of day, and what was seen

    // The answer that nearly all votes are for; empty without votes, and where they disagree.
    std::string answer() const;
};

std::vector<Fact> factsOf(const std::vector<TimedRecord>& records);

// A table, as `lumbrine-blackbox facts` prints it.
std::string textOf(const std::vector<Fact>& facts);

} // namespace lumbrine::blackbox
