// The screen of the simulated Pro Tools: which elements its windows have, what is in their attributes, and what
// pressing them does. It shows the same session as the surfaces and the scripting service: nothing is kept of it here,
// each read tells how the session is. What belongs to a track is gone with the track.
//
// No thread, no clock and no faults of reading; belongs to whoever guards it.
#pragma once

#include "simulator/screen_element.h"
#include "simulator/screen_options.h"
#include "simulator/simulated_session.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lumbrine {

class SimulatedScreen {
public:
    // `applyPeripherals` is called when the Peripherals dialog is closed with OK. The session outlives the screen. The
    // options have no problem (problemWith).
    SimulatedScreen(const ScreenOptions& chosen, const SimulatedSession& shownSession,
                    std::function<void(TimePoint now)> applyPeripherals);

    // ---- As other programs see it.

    // Absent when the element is gone or has no such attribute.
    std::optional<ScreenValue> attribute(const ScreenElement& element, std::string_view name, TimePoint now) const;

    // What was pressed and what that did, in words; absent when there is nothing to press.
    std::optional<std::string> press(const ScreenElement& element, TimePoint now);

    // ---- As its user sees it.

    void openPeripherals(TimePoint now); // nothing while it is open or opening
    bool peripheralsOpen(TimePoint now) const { return opensAt <= now; }

    // A dialog with these lines and an OK button.
    void showAlert(std::vector<std::string> lines);
    // One that holds up the whole program until it is closed.
    void showDialog(std::vector<std::string> lines);
    void closeDialogs();
    std::optional<std::string> dialogText() const; // of the one in front, in one line; absent without one

    std::size_t alertCount() const { return alerts.size(); }

    void showWindows(bool edit, bool mix);
    void scrollMix(int firstStrip); // the first of the shown tracks that the Mix window has in sight

    // No dialog is open, both windows are, the Mix window shows its beginning.
    void rest();

private:
    struct Alert {
        int number;
        std::vector<std::string> lines;
        bool modal;
    };

    bool isThere(const ScreenElement& element, TimePoint now) const;
    bool stripInSight(int trackID) const;
    const Alert* findAlert(int number) const;

    std::string_view role(const ScreenElement& element) const;
    std::optional<std::string> title(const ScreenElement& element) const;
    std::optional<ScreenValue> value(const ScreenElement& element) const;
    std::optional<std::vector<ScreenElement>> children(const ScreenElement& element, TimePoint now) const;

    std::vector<ScreenElement> windows(TimePoint now) const;
    std::vector<ScreenElement> listRows() const;
    std::vector<ScreenElement> strips() const;
    std::vector<ScreenElement> rooms(ScreenElement::Kind window) const;
    std::string listedName(int trackID) const;

    std::string pressDialogButton(int button, TimePoint now);

    const ScreenOptions options;
    const SimulatedSession& session;
    const std::function<void(TimePoint)> apply;

    bool editShown = true;
    bool mixShown = true;
    int firstStripInSight = 0;
    std::vector<Alert> alerts;
    int alertsSoFar = 0;

    TimePoint opensAt = TimePoint::max(); // the Peripherals dialog
    int opening = 0;                      // which time that is
    int openTab = 0;
};

} // namespace lumbrine
