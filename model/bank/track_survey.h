// Joining what a scan has seen of the session, bank by bank, with the track list of Pro Tools, if there is one. The
// surfaces say what the strips show; the list says how many tracks there are and in which order, also where displays
// are blank or alike. Pure.
#pragma once

#include "model/bank/surveyed_bank.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace lumbrine {

class TrackSurvey {
public:
    // `listed`: the full names of the tracks that the banks should show; empty when there is no list.
    TrackSurvey(std::size_t width, std::vector<std::string> listed);

    // The first bank of the session, and then what is shown after each press of the bank key; after one that showed
    // nothing only if it is known to have moved the surfaces, or the list expects another bank.
    void add(SurveyedBank bank);

    const std::vector<SurveyedBank>& seen() const { return banks; }

    // Whether the session goes on by the list, which agrees with the banks so far: then a press that changes nothing
    // has led to a bank that looks the same, or was lost.
    bool expectsAnother() const;

    // Whether the banks are all that the list has, and show it.
    bool isWholeByList() const;

    // Whether something else than the bank key changed what was shown: a session was closed or opened, a mode was shown
    // over a name, or somebody else moved the banks.
    bool looksDisturbed() const;

    // Without a list that agrees: how far the last bank lies behind the one before. 0: nobody knows, which makes the
    // session unsure.
    void endsAfter(std::size_t step) { lastStep = step; }

    // The tracks with display names and faders. As many as the list has, if every bank shows what the list says.
    // Otherwise the banks follow each other by the width, but for the last one, up to the last track that shows; blanks
    // are there without faders.
    Session session() const;

private:
    using Banks = std::vector<SurveyedBank>;
    using Offsets = std::vector<std::size_t>; // of each bank

    std::size_t listedBanks() const;
    Offsets offsetsByList(bool lastBankIsFilled) const;
    Offsets chosenByList(const Banks& chosen) const;
    bool fitsList(const Banks& chosen, const Offsets& offsets) const;
    bool hasSameFaders(const Banks& chosen, const Offsets& offsets) const;
    template <typename ValueOf>
    bool agree(const Banks& chosen, const Offsets& offsets, ValueOf valueOf) const;
    Banks withoutRepeats() const;
    Session byDisplays() const;
    Session placed(const Banks& chosen, const Offsets& offsets, std::size_t tracks) const;

    const std::size_t width;
    const std::vector<std::string> listed;
    Banks banks;
    std::optional<std::size_t> lastStep;
};

} // namespace lumbrine
