// For tests that read the screen: one screen in memory. At the end, the fixture checks that no handle is left.
#pragma once

#include "platform/virtual/still_runtime.h"
#include "screen/no_reading.h"
#include "screen/testing/screen_tree.h"

#include <gtest/gtest.h>

#include <expected>

namespace lumbrine {

class ScreenTest : public testing::Test {
protected:
    using Element = MemoryScreen::Element;
    static constexpr std::int32_t process = 501;

    void TearDown() override { EXPECT_EQ(screen.liveHandles(), 0) << "handles are left"; }

    // Adds elements to the screen; see screen/testing/screen_tree.h.
    void show(std::string_view tree) {
        const auto labels = showTree(screen, tree);
        ASSERT_TRUE(labels) << labels.error();
        labelled.insert(labels->begin(), labels->end());
    }

    Element at(std::string_view label) const { return labelled.find(label)->second; }

    // The root of Pro Tools' elements.
    ElementHandle app() { return screen.applicationElement(process); }

    // A row of the "Track List" table, with the name as the value of the text in its first cell.
    Element row(const std::string& name, bool selected = false) {
        const Element text = screen.add({{"AXRole", "AXStaticText"}, {"AXValue", name}});
        const Element cell = screen.add({{"AXRole", "AXCell"}, {"AXChildren", std::vector{text}}});
        return screen.add({{"AXRole", "AXRow"}, {"AXSelected", selected}, {"AXChildren", std::vector{cell}}});
    }

    // A strip of the Mix window with `others` further elements in it.
    Element strip(const std::string& name, const std::string& comment, int others = 0) {
        const Element popUp = screen.add({{"AXRole", "AXPopUpButton"}, {"AXValue", name}});
        const Element field = screen.add({{"AXRole", "AXTextField"}, {"AXValue", comment}});
        std::vector<Element> parts{popUp, field};
        for (int i = 0; i < others; ++i)
            parts.push_back(screen.add({{"AXRole", "AXSlider"}}));
        return screen.add({{"AXRole", "AXGroup"}, {"AXChildren", parts}});
    }

    // Makes the reads with these numbers fail.
    void failReads(std::function<bool(std::uint64_t number)> fails) {
        screen.watchReads([fails = std::move(fails)](const MemoryScreen::Read& read) { return !fails(read.number); });
    }

    // A reading as an optional, for what it brought.
    template <typename Found>
    static std::optional<Found> broughtBy(std::expected<Found, NoReading> reading) {
        return reading ? std::optional(*std::move(reading)) : std::nullopt;
    }

    MemoryScreen screen;
    StillRuntime clock;

private:
    ElementLabels labelled;
};

} // namespace lumbrine
