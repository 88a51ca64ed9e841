#include "screen/element_access.h"
#include "screen/pt_mix_comments.h"
#include "screen/pt_track_list.h"
#include "screen/testing/reconnector_test.h"

#include <random>

namespace lumbrine {
namespace {

using namespace std::chrono_literals;

class ScreenTroubleTest : public ReconnectorTest {};

TEST_F(ScreenTroubleTest, OneReadOfTheReconnectorThatFailsCostsALookOrTheOK) {
    showMenuBar();
    const auto showAlertAndDialog = [&] {
        const Element told = screen.add({{"AXRole", "AXStaticText"}, {"AXValue", "HUI"}});
        const Element ok = screen.add({{"AXRole", "AXButton"}, {"AXTitle", "OK"}});
        const Element alert = screen.add({{"AXSubrole", "AXDialog"}, {"AXChildren", std::vector{told, ok}}});
        screen.set(at("app"), "AXWindows", std::vector{alert, closedDialog()});
        whenPressed = [this, alert, ok](Element pressed) {
            if (pressed == ok) screen.remove(alert);
        };
    };
    showAlertAndDialog();
    EXPECT_EQ(run(), success);
    EXPECT_EQ(took, 1s);
    const std::uint64_t needed = screen.reads();
    std::map<std::string, int> outcomes;
    for (std::uint64_t i = 1; i <= needed; ++i) {
        showAlertAndDialog();
        failReads([failing = screen.reads() + i](std::uint64_t number) { return number == failing; });
        ++outcomes[run()];
        EXPECT_LE(took, 1'200ms) << i;
    }
    // In the last search: the dialog's children, and the button's role and title.
    EXPECT_EQ(outcomes[noButton], 2);
    EXPECT_EQ(outcomes[success], static_cast<int>(needed) - 2);
}

TEST_F(ScreenTroubleTest, ReadsThatAllFailFromOneOnEndEveryWork) {
    show("application com.avid.ProTools 501 &app\n"
         "  AXWindows:\n"
         "    AXWindow AXTitle=\"Mix: Song\"\n"
         "      AXGroup\n"
         "        AXPopUpButton AXValue=\"Kick\"\n"
         "        AXTextField AXValue=\"tight\"\n"
         "      AXTable AXDescription=\"Track List\"\n"
         "        AXRow\n"
         "          AXCell\n"
         "            AXStaticText AXValue=\"Kick\"\n"
         "    AXWindow AXTitle=\"Peripherals\"\n"
         "      AXRadioButton AXTitle=\"MIDI Controllers\"\n"
         "      AXButton AXTitle=\"OK\"\n");
    for (std::uint64_t i = 1; i <= 40; ++i) {
        failReads([from = screen.reads() + i](std::uint64_t number) { return number >= from; });
        const std::string outcome = run();
        EXPECT_TRUE(outcome == success || outcome == noButton || outcome == noMenuItem || outcome == notOpen);
        failReads([from = screen.reads() + i](std::uint64_t number) { return number >= from; });
        EXPECT_EQ(broughtBy(PTTrackList::read(screen, runtime)).value_or(Snapshot{{"Kick"}, {}}).names,
                  std::vector<std::string>{"Kick"});
        failReads([from = screen.reads() + i](std::uint64_t number) { return number >= from; });
        const auto comments = PTMixComments::read(screen, runtime, {"Kick"});
        const std::string comment = comments ? comments->at("Kick") : "";
        EXPECT_TRUE(comment == "tight" || comment.empty()) << comment;
    }
}

// Random elements with the roles, titles and values that the code searches for, and with others, linked at random.
class RandomTree {
public:
    RandomTree(MemoryScreen& screen, std::uint32_t seed) : screen(screen), engine(seed) {
        const MemoryScreen::Element app = screen.launch("com.avid.ProTools", 501);
        elements.push_back(app);
        const std::uint32_t count = 5 + below(60);
        for (std::uint32_t i = 0; i < count; ++i)
            elements.push_back(screen.add({}));
        const std::uint32_t most = below(20) == 0 ? 12 : 4;
        for (const MemoryScreen::Element element : elements)
            fill(element, most);
        screen.set(app, "AXWindows", some(6));
        const MemoryScreen::Element bar = any();
        screen.set(app, "AXMenuBar", bar);
    }

    // Some reads fail, and some elements vanish before they are read.
    void makeTrouble() {
        screen.watchReads([this](const MemoryScreen::Read& read) {
            const std::uint32_t fate = below(400);
            if (fate == 0) screen.remove(read.element);
            return fate > 8;
        });
    }

private:
    std::uint32_t below(std::uint32_t count) { return static_cast<std::uint32_t>(engine() % count); }

    MemoryScreen::Element any() { return elements[below(static_cast<std::uint32_t>(elements.size()))]; }

    std::vector<MemoryScreen::Element> some(std::uint32_t most) {
        std::vector<MemoryScreen::Element> list(below(most));
        for (MemoryScreen::Element& element : list)
            element = any();
        return list;
    }

    std::string word(const std::vector<std::string>& words) {
        return words[below(static_cast<std::uint32_t>(words.size()))];
    }

    void fill(MemoryScreen::Element element, std::uint32_t mostChildren) {
        const std::vector<std::string> roles{"AXTable",      "AXRow",         "AXCell",
                                             "AXStaticText", "AXButton",      "AXRadioButton",
                                             "AXTextField",  "AXPopUpButton", "AXGroup"};
        const std::vector<std::string> words{"OK",   "HUI",     "Peripherals", "MIDI Controllers", "Mix",
                                             "Kick", "1. Kick", "ミックス",    "\xFF\xFE. ",       ""};
        screen.set(element, "AXRole", word(roles));
        for (const char* attribute : {"AXTitle", "AXValue"}) {
            const std::uint32_t kind = below(8);
            if (kind == 0) {
                screen.set(element, attribute, MemoryScreen::OtherKind());
            } else if (kind == 1) {
                const MemoryScreen::Element other = any();
                screen.set(element, attribute, other);
            } else {
                screen.set(element, attribute, word(words));
            }
        }
        screen.set(element, "AXDescription", word({"Track List", "Groups"}));
        screen.set(element, "AXSubrole", word({"AXDialog", "AXStandardWindow"}));
        const bool isSelected = below(3) == 0;
        screen.set(element, "AXSelected", isSelected);
        screen.set(element, "AXChildren", some(mostChildren));
    }

    MemoryScreen& screen;
    std::mt19937 engine;
    std::vector<MemoryScreen::Element> elements;
};

TEST_F(ScreenTroubleTest, NoTreeWhateverHangsOrLeavesAHandle) {
    int snapshots = 0;
    int comments = 0;
    std::map<std::string, int> outcomes;
    for (std::uint32_t seed = 1; seed <= 300; ++seed) {
        SCOPED_TRACE(seed);
        screen.watchReads(nullptr);
        RandomTree tree(screen, seed);
        if (seed % 2 == 0) tree.makeTrouble();
        const std::uint64_t before = screen.reads();
        if (const auto snapshot = PTTrackList::read(screen, runtime)) {
            ++snapshots;
            EXPECT_FALSE(snapshot->names.empty());
            EXPECT_GE(snapshot->selectedIndex.value_or(0), 0);
        }
        if (const auto found = PTMixComments::read(screen, runtime, {"Kick", "OK"})) {
            ++comments;
            for (const auto& [name, comment] : *found)
                EXPECT_TRUE(name == "Kick" || name == "OK");
        }
        ++outcomes[run()];
        EXPECT_LE(took, 25'400ms); // the screen answers at once
        EXPECT_LE(screen.reads() - before, 10 * ElementAccess::elementLimit);
        EXPECT_EQ(screen.liveHandles(), 0);
        screen.quit(process);
    }
    // The trees must be varied enough to produce each kind of result.
    EXPECT_GT(snapshots, 0);
    EXPECT_GT(comments, 0);
    for (const char* outcome : {success, notOpen, noMenuItem, noButton})
        EXPECT_GT(outcomes[outcome], 0) << outcome;
}

TEST_F(ScreenTroubleTest, SeveralMayReadAtOnce) {
    show("application com.avid.ProTools 501\n"
         "  AXWindows:\n"
         "    AXWindow &mix AXTitle=\"Mix: Song\"\n"
         "      AXTable &table AXDescription=\"Track List\"\n");
    for (const char* name : {"Kick", "Snare", "Bass"}) {
        screen.append(at("table"), "AXChildren", row(name));
        screen.append(at("mix"), "AXChildren", strip(name, std::string("of ") + name));
    }
    screen.watchReads([&](const MemoryScreen::Read&) {
        runtime.sleepFor(1ms); // Pro Tools takes its time
        return true;
    });
    int done = 0;
    for (int i = 0; i < 4; ++i)
        runtime.background(Priority::utility, [&] {
            EXPECT_EQ(PTTrackList::read(screen, runtime)->names, (std::vector<std::string>{"Kick", "Snare", "Bass"}));
            EXPECT_EQ(PTMixComments::read(screen, runtime, {"Kick", "Bass"})->at("Bass"), "of Bass");
            runtime.postMain([&] { ++done; });
        });
    EXPECT_TRUE(runtime.runUntil([&] { return done == 4; }, 1s));
}

} // namespace
} // namespace lumbrine
