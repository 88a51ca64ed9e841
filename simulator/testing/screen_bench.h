// For tests: a simulated Pro Tools in virtual time, and another program that reads its screen.
#pragma once

#include "platform/virtual/memory_midi.h"
#include "platform/virtual/virtual_runtime.h"
#include "simulator/simulated_pro_tools.h"
#include "simulator/testing/host_bench.h"

#include <optional>
#include <string>
#include <vector>

namespace lumbrine {

class ScreenBench : public testing::Test {
protected:
    using Elements = std::vector<ElementHandle>;

    SimulatedAccessibility& start(const ScreenOptions& options = {},
                                  const SimulatedSession& session = numberedSession(3)) {
        SimulatorOptions all;
        all.screen = options;
        return startWith(all, session);
    }

    SimulatedAccessibility& startWith(const SimulatorOptions& options, const SimulatedSession& session) {
        proTools.reset();
        proTools = std::make_unique<SimulatedProTools>(runtime, midi, options, session);
        return proTools->screen();
    }

    SimulatedAccessibility& screen() { return proTools->screen(); }
    ElementHandle app() { return screen().applicationElement(SimulatedAccessibility::processIdentifier); }

    template <typename Value>
    std::optional<Value> read(const ElementHandle& element, std::string_view name) {
        const auto value = screen().attribute(element, name);
        if (!value || !std::holds_alternative<Value>(*value)) return std::nullopt;
        return std::get<Value>(*value);
    }

    std::string text(const ElementHandle& element, std::string_view name) {
        return read<std::string>(element, name).value_or("none");
    }
    std::string role(const ElementHandle& element) { return text(element, "AXRole"); }
    Elements children(const ElementHandle& element) {
        return read<Elements>(element, "AXChildren").value_or(Elements{});
    }
    Elements windows() { return read<Elements>(app(), "AXWindows").value_or(Elements{}); }

    std::vector<std::string> titlesOf(const Elements& elements) {
        std::vector<std::string> titles;
        for (const ElementHandle& element : elements)
            titles.push_back(text(element, "AXTitle"));
        return titles;
    }

    // The window with this title. Fails the test when there is none.
    ElementHandle window(std::string_view title) {
        for (const ElementHandle& found : windows())
            if (text(found, "AXTitle") == title) return found;
        ADD_FAILURE() << "no window " << title;
        return app();
    }
    ElementHandle editWindow() { return window("Edit: Test"); }
    ElementHandle mixWindow() { return window("Mix: Test"); }

    Elements rows() {
        Elements found = children(children(editWindow()).at(0));
        std::erase_if(found, [this](const ElementHandle& child) { return role(child) != "AXRow"; });
        return found;
    }
    Elements strips() { return children(children(mixWindow()).at(0)); }

    std::vector<std::string> listedNames() {
        std::vector<std::string> names;
        for (const ElementHandle& row : rows())
            names.push_back(text(children(children(row).at(0)).at(0), "AXValue"));
        return names;
    }

    // "name: comment" of each strip of the Mix window.
    std::vector<std::string> mixedTracks() {
        std::vector<std::string> tracks;
        for (const ElementHandle& strip : strips())
            tracks.push_back(text(children(strip).at(3), "AXValue") + ": " + text(children(strip).at(4), "AXValue"));
        return tracks;
    }

    // Presses Setup ▸ Peripherals...
    bool choosePeripherals() {
        const auto bar = read<ElementHandle>(app(), "AXMenuBar");
        if (!bar) return false;
        const ElementHandle menu = children(children(*bar).at(5)).at(0);
        for (const ElementHandle& item : children(menu))
            if (text(item, "AXTitle").starts_with("Peri")) return press(item);
        return false;
    }

    bool press(const ElementHandle& element) { return screen().perform(element, "AXPress"); }

    VirtualRuntime runtime;
    MemoryMIDI midi{runtime};
    std::unique_ptr<SimulatedProTools> proTools;
};

} // namespace lumbrine
