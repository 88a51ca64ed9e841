// What the simulated screen shows at one moment, as values. A shell makes real windows, menus and elements from them,
// so that other programs find on them what they find on the simulated screen.
#pragma once

#include "simulator/simulated_screen.h"

#include <optional>
#include <string>
#include <vector>

namespace lumbrine {

struct ScreenNode {
    ScreenElement element; // the same as long as the thing exists
    std::string role;
    std::optional<std::string> subrole;
    std::optional<std::string> title;
    std::optional<std::string> description;
    std::optional<std::string> text; // the value of an element with text
    std::optional<bool> isOn;        // the value of a tab
    std::optional<bool> isSelected;
    std::vector<ScreenNode> children;

    bool operator==(const ScreenNode&) const = default;
};

// The application with all that is on its screen.
ScreenNode outlineOf(const SimulatedScreen& screen, TimePoint now);

// Parts of the application's outline, which must outlive them.
std::vector<const ScreenNode*> windowsIn(const ScreenNode& application); // the front one first
std::vector<const ScreenNode*> menusIn(const ScreenNode& application);   // from left to right, the Apple menu first

// What to do to the windows of one moment to have those of another.
struct WindowChanges {
    std::vector<ScreenElement> closed;
    std::vector<const ScreenNode*> opened; // the front one last, in the order in which to bring them to the front
    std::vector<const ScreenNode*> changed;
};
WindowChanges windowChanges(const ScreenNode& before, const ScreenNode& after);

// The content of a window as lines of text from top to bottom: one for each element that says something.
struct ScreenLine {
    ScreenElement element;
    int depth = 0; // how many elements of the window it is inside of
    std::string text;
    bool isButton = false;

    bool operator==(const ScreenLine&) const = default;
};
std::vector<ScreenLine> linesOf(const ScreenNode& window);

} // namespace lumbrine
