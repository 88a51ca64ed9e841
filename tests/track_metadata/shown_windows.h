// For tests: Pro Tools' Edit and Mix windows on a MemoryScreen, with contents that the test sets.
#pragma once

#include "platform/virtual/memory_screen.h"

#include <string>
#include <utility>
#include <vector>

namespace lumbrine {

class ShownWindows {
public:
    using Element = MemoryScreen::Element;

    explicit ShownWindows(MemoryScreen& screen) : screen(screen), app(screen.launch("com.avid.ProTools", 77)) {}

    // Sets the rows of the track list.
    void listTracks(const std::vector<std::string>& names) {
        screen.remove(edit);
        std::vector<Element> rows;
        for (const std::string& name : names)
            rows.push_back(row(name));
        const Element table =
            screen.add({{"AXRole", "AXTable"}, {"AXDescription", "Track List"}, {"AXChildren", rows}});
        edit = screen.add({{"AXTitle", "Edit: Session"}, {"AXChildren", std::vector{table}}});
        showWindows();
    }

    // Sets the strips of the Mix window: name and comment of each.
    void mix(const std::vector<std::pair<std::string, std::string>>& strips) {
        screen.remove(mixer);
        std::vector<Element> groups;
        for (const auto& [name, comment] : strips)
            groups.push_back(strip(name, comment));
        mixer = screen.add({{"AXTitle", "Mix: Session"}, {"AXChildren", groups}});
        showWindows();
    }

    void closeMix() {
        screen.remove(mixer);
        mixer = {};
        showWindows();
    }

private:
    Element row(const std::string& name) {
        const Element text = screen.add({{"AXRole", "AXStaticText"}, {"AXValue", name}});
        const Element cell = screen.add({{"AXRole", "AXCell"}, {"AXChildren", std::vector{text}}});
        return screen.add({{"AXRole", "AXRow"}, {"AXSelected", false}, {"AXChildren", std::vector{cell}}});
    }

    Element strip(const std::string& name, const std::string& comment) {
        const Element popUp = screen.add({{"AXRole", "AXPopUpButton"}, {"AXValue", name}});
        const Element field = screen.add({{"AXRole", "AXTextField"}, {"AXValue", comment}});
        return screen.add({{"AXRole", "AXGroup"}, {"AXChildren", std::vector{popUp, field}}});
    }

    void showWindows() { screen.set(app, "AXWindows", std::vector{mixer, edit}); }

    MemoryScreen& screen;
    const Element app;
    Element edit;
    Element mixer;
};

} // namespace lumbrine
