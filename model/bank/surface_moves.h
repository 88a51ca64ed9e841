// Moving the surfaces over the session by presses, and knowing when they have settled. Pro Tools confirms nothing: all
// there is to see are the display texts that it sends some time after a press.
//
// Every routine blocks and is for the work of a job that moves the banks (model/hands/desk_queue.h). It reads the
// state in hops to the main thread.
#pragma once

#include "model/bank/bank_map.h"
#include "model/bank/bank_step.h"
#include "model/bank/surveyed_bank.h"
#include "model/hands/display_watch.h"

#include <functional>

namespace lumbrine {

class SurfaceMoves {
public:
    static constexpr int maxPresses = 300;                 // of one moveWindow
    static constexpr int maxAttempts = 4;                  // of one moveWindowReliably
    static constexpr int stableWindowSamples = 6;          // 0.12 s apart
    static constexpr Duration stillForGood = seconds(0.3); // names that have not changed for so long are all there

    SurfaceMoves(Runtime& runtime, const ReceiverState& state, const BankMap& bankMap, SurfaceDesk& desk,
                 DisplayWatch& displays);

    // What presses so far have shown of Pro Tools, for diagnostics: how fast it is, and where its bank buttons lead.
    std::string habits() const;

    // ---- Looking

    // Zero tracks while the runtime is being shut down.
    BankLayout layout() const;

    TrackNames snapshotWindow() const;

    // The window, once two looks at it in a row have been alike; after 0.12 s at the earliest and 0.72 s at the latest.
    TrackNames stableWindow() const;

    // The stable window, and the faders beside it.
    SurveyedBank stableLook() const;

    // The index of the track on strip 0 by the shown names; -1 when they do not tell.
    int shownOffset() const;

    // The same, but gives names that tell nothing up to 1 s while they still change: while one has come within `still`.
    int recognizedOffset(Duration still = stillForGood);

    // Returns once no display text has come for 0.08 s: after 0.12 s at the earliest, and always within half a second;
    // or as soon as `enough` says so.
    void shortQuietWait(const std::function<bool()>& enough = [] { return false; });

    // Returns once no display text has come for longer than `still`, and after `limit` in any case.
    void waitForStillNames(Duration still, Duration limit);

    // ---- Moving

    void press(int port);

    // One press on the way; corrections of less than a bank take `channels` alone.
    BankStep stepTowards(int target, int current, BankLayout session, bool channels);

    // Where a step from there has led. As predicted, unless it was a bank button and the displays show that it does not
    // lead to multiples, or does; which is remembered. To be called once Pro Tools has had time to show it.
    int ledTo(int from, BankStep step, BankLayout& session);

    // Waits for the effect of a press that leads nobody knows where: for other names, until they are still, or for
    // 1.1 s, whatever the usual time. Returns as soon as `enough` says so.
    void awaitEffect(const std::function<bool()>& enough);

    // Where the presses on the way to `target` have led, -1 when the displays do not tell. Returns once all presses
    // should have shown their effect, by Pro Tools' usual time at the target and by the longest one elsewhere; or as
    // soon as `enough` says so, with -1.
    int arrival(int target, const std::function<bool()>& enough = [] { return false; });

    // For the end of a job, before the client's hands are on the surfaces again: returns once the last press shows no
    // sign of being on its way any more. It may be on its way for up to 1.1 s, however fast Pro Tools has been lately,
    // while the displays do not show `target` or, where they do not tell, have not changed since. Returns as soon as
    // `enough` says so.
    void awaitLastPress(int target, const std::function<bool()>& enough = [] { return false; });

    // The stable look after a press, once it is another one than before; the same one after 1.1 s, whatever the usual
    // time: then the press has shown nothing.
    SurveyedBank lookAfterPress(const SurveyedBank& before);

    // So many presses of a channel button, as fast as Pro Tools follows.
    void pressChannels(int port, std::size_t times);

    // Presses its way to the target, or as near as the session's end allows. Does nothing when the shown names do not
    // tell where the surfaces are.
    void moveWindow(int target);

    // The same, and looks afterwards; tries again when the surfaces are elsewhere.
    void moveWindowReliably(int target);

    // The same to a view that Pro Tools has shown, perhaps with blank strips behind the last track.
    void returnTo(int view);

private:
    SurveyedBank withFaders(TrackNames names) const;
    void moveOnce(int target, bool isCorrection);
    Duration sincePress() const { return runtime.now() - lastPress; }

    // A text has come since the last press, and not only one that was on its way before: not before the usual time.
    bool mayShowEffect() const;

    Runtime& runtime;
    const ReceiverState& state;
    const BankMap& bankMap;
    SurfaceDesk& desk;
    DisplayWatch& displays;
    TimePoint lastPress = distantPast; // on the desk's thread, like the next
    BankRule rule;
};

} // namespace lumbrine
