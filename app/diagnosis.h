// Whether everything is as it must be for a phone to move Pro Tools' faders, and what to do where it is not. Computed
// from the model's published state alone: nothing is asked and nothing is waited for.
#pragma once

#include "base/bilingual.h"
#include "model/state/published_state.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace lumbrine {

enum class CheckState {
    fine,
    waiting, // it may still come, and nothing has failed
    wrong,
    unknown, // cannot be known at the moment
};

struct Check {
    std::string_view id; // the same in every language: "port"
    CheckState state;
    std::string title;
    std::string sentence;
    std::string remedy = {}; // what to do; empty when there is nothing to do

    bool operator==(const Check&) const = default;
};

// What a remedy is for: services and settings have different names and places.
enum class HostSystem { linuxDesktop, mac };

// From the network inwards to Pro Tools, then the phone. Always the same checks in the same order.
std::vector<Check> diagnosis(const PublishedState& published, HostSystem system, const Bilingual& text);

// Of the program that the receiver runs in: how many lines of its log standard output has not taken yet.
Check outputCheck(std::size_t backlog, const Bilingual& text);

bool isAnyWrong(const std::vector<Check>& checks);

// The one sentence that matters most: of the first check that is wrong, else of the first that waits, else that
// everything is fine.
std::string summaryOf(const std::vector<Check>& checks, const Bilingual& text);

// "✓ ", "… ", "✗ " or "? ".
std::string_view markOf(CheckState state);

// Lines for a terminal: a mark, the title and the sentence of each check, below it what to do.
std::string listed(const std::vector<Check>& checks);

// The texts about clients, "::ffff:192.168.1.7 (+1 waiting)", with IPv4 addresses as people write them.
std::string withPlainAddresses(std::string text);

} // namespace lumbrine
