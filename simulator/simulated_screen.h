// The screen of the simulated Pro Tools: the elements of its windows, their attributes, and the effects of pressing
// them. It keeps no copy of the session: each read shows its current state. The elements of a track disappear with the
// track.
//
// It has no thread, no clock and no faults. Not synchronised: the owner guards it.
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
    // Calls `apply` when the Peripherals dialog is closed with OK. The session must outlive the screen.
    // Precondition: the options are valid (problemWith).
    SimulatedScreen(const ScreenOptions& options, const SimulatedSession& session,
                    std::function<void(TimePoint now)> apply);

    // ---- For other programs.

    // The value of an attribute. Absent when the element does not exist or has no such attribute.
    std::optional<ScreenValue> attribute(const ScreenElement& element, std::string_view name, TimePoint now) const;

    // Presses an element and returns a description of the press and its effect. Absent when it cannot be pressed.
    std::optional<std::string> press(const ScreenElement& element, TimePoint now);

    // ---- For its user.

    void openPeripherals(TimePoint now); // does nothing while the dialog is open or opening
    bool peripheralsOpen(TimePoint now) const { return opensAt <= now; }

    // Shows an alert with these lines and an OK button.
    void showAlert(std::vector<std::string> lines);
    // The same, but the alert blocks the whole program until it is closed.
    void showDialog(std::vector<std::string> lines);
    void closeDialogs();
    std::optional<std::string> dialogText() const; // of the front dialog, as one line; absent without a dialog

    std::size_t alertCount() const { return alerts.size(); }

    void showWindows(bool edit, bool mix);
    void scrollMix(int firstStrip); // makes this shown track the first visible one in the Mix window

    // Closes all dialogs, opens both windows and scrolls the Mix window to its beginning.
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

    TimePoint opensAt = TimePoint::max(); // when the Peripherals dialog opens or has opened
    int opening = 0;                      // how often it has been opened
    int openTab = 0;
};

} // namespace lumbrine
