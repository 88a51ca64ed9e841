// Where a scan has ended, by what the surfaces show alone. The last bank may overlap the one before; a bank key that
// showed nothing may have met the end of the session, led to a bank that looks the same, or been lost. A few steps back
// by channels tell: each shows one more track of the bank before. Pure.
#pragma once

#include "model/bank/surveyed_bank.h"

#include <cstddef>
#include <vector>

namespace lumbrine {

class ScanEnding {
public:
    // `banks`: of a scan from the first track on, whose last bank key showed nothing. They stay with the caller.
    explicit ScanEnding(const std::vector<SurveyedBank>& banks);

    // What the surfaces show so many channels before the last bank.
    void sawBefore(std::size_t channels, SurveyedBank shown);

    // Whether more steps back may tell more.
    bool isOpen() const;

    // What was seen fits no ending: presses were lost, or the session has changed meanwhile.
    bool isImpossible() const { return possible.empty(); }

    // That key led to a bank that looks like the one before.
    bool hasMoved() const;

    // How far the last bank lies behind the one before; 0 while it may be several, or when nothing fits.
    std::size_t lastStep() const;

    // Where the last bank begins, by the first of what is possible; 0 when nothing fits.
    std::size_t lastOffset() const { return possible.empty() ? 0 : offsetOf(possible.front()); }

    // The last step by the banks alone: the overlap of the last one, if two tracks in it are like no others; the width
    // for one with strips behind the last track. 0: looking back is needed.
    static std::size_t evidentLastStep(const std::vector<SurveyedBank>& banks);

private:
    struct Possible {
        bool moved;
        std::size_t step;
    };

    std::size_t offsetOf(const Possible& ending) const;
    bool wouldShow(const Possible& ending, std::size_t channels, const SurveyedBank& shown) const;

    const std::vector<SurveyedBank>& banks;
    std::vector<Possible> possible;
};

} // namespace lumbrine
