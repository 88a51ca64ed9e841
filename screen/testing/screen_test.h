// For tests of what is read on the screen: one screen in memory, and no handle is left at the end.
#pragma once

#include "screen/testing/screen_tree.h"

#include <gtest/gtest.h>

namespace lumbrine {

class ScreenTest : public testing::Test {
protected:
    using Element = MemoryScreen::Element;
    static constexpr std::int32_t process = 501;

    void TearDown() override { EXPECT_EQ(screen.liveHandles(), 0) << "handles are left"; }

    // The screen shows this too; see screen/testing/screen_tree.h.
    void show(std::string_view tree) {
        const auto labels = showTree(screen, tree);
        ASSERT_TRUE(labels) << labels.error();
        labelled.insert(labels->begin(), labels->end());
    }

    Element at(std::string_view label) const { return labelled.find(label)->second; }

    // The root of Pro Tools' elements, with which the tests of the access layer begin.
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

    // Each read with such a number fails.
    void failReads(std::function<bool(std::uint64_t number)> fails) {
        screen.watchReads([fails = std::move(fails)](const MemoryScreen::Read& read) { return !fails(read.number); });
    }

    MemoryScreen screen;

private:
    ElementLabels labelled;
};

} // namespace lumbrine
