// Joining what a scan has seen of the session, bank by bank, with the track list of Pro Tools, if there is one. The
// surfaces say what the strips show; the list says how many tracks there are and in which order, also where displays
// are blank or alike. Pure.
#pragma once

#include "model/bank/track_window.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace lumbrine {

struct SurveyedBank {
    TrackNames names; // of all strips, from the left
    std::vector<std::optional<double>> faders;
};

class TrackSurvey {
public:
    // `listed`: the full names of the tracks that the banks should show; empty when there is no list.
    TrackSurvey(std::size_t width, std::vector<std::string> listed);

    // The first bank of the session, and then what is shown after each press of the bank key.
    void add(SurveyedBank bank);

    // Whether the session goes on by the list, which agrees with the banks so far: then a press that changes nothing
    // has led to a bank that looks the same, or was lost.
    bool expectsAnother() const;

    // The tracks with display names and faders. As many as the list has, if every bank shows what the list says.
    // Otherwise the banks are joined where their ends and beginnings are alike, up to the last track with a name;
    // blanks in between are there without faders.
    Session session() const;

private:
    using Banks = std::vector<SurveyedBank>;
    using Offsets = std::vector<std::size_t>; // of each bank

    std::size_t listedBanks() const;
    Offsets offsetsByList(bool lastBankIsFilled) const;
    bool fitsList(const Banks& seen, const Offsets& offsets) const;
    bool hasSameFaders(const Banks& seen, const Offsets& offsets) const;
    template <typename ValueOf>
    bool agree(const Banks& seen, const Offsets& offsets, ValueOf valueOf) const;
    Banks withoutRepeats() const;
    Session joined(const Banks& seen) const;
    Session placed(const Banks& seen, const Offsets& offsets, std::size_t tracks) const;

    const std::size_t width;
    const std::vector<std::string> listed;
    Banks banks;
};

} // namespace lumbrine
