#include "screen/pt_mix_comments.h"
#include "screen/testing/screen_test.h"

namespace lumbrine {
namespace {

using namespace std::chrono_literals;
using Comments = std::map<std::string, std::string>;

class PTMixCommentsTest : public ScreenTest {
protected:
    std::optional<Comments> read(const std::vector<std::string>& known = {"Kick", "Snare", "Vocals"}) {
        return broughtBy(PTMixComments::read(screen, clock, known));
    }

    // A Mix window with these lines in it.
    void showMix(const std::string& lines) {
        show("application com.avid.ProTools 501\n"
             "  AXWindows:\n"
             "    AXWindow &mix AXTitle=\"Mix: Song\"\n" +
             lines);
    }

    std::expected<Comments, NoReading> reading() {
        return PTMixComments::read(screen, clock, {"Kick", "Snare", "Vocals"});
    }

    // 15 messages: windows, title, the window's list, the strips, what is in them.
    void showThreeStrips() {
        showMix("      AXGroup\n"
                "        AXPopUpButton AXValue=\"Kick\"\n"
                "        AXTextField AXValue=\"tight\"\n"
                "      AXGroup\n"
                "        AXPopUpButton AXValue=\"Snare\"\n"
                "        AXTextField AXValue=\"loose\"\n"
                "        AXButton\n"
                "        AXPopUpButton AXValue=\"Output\"\n"
                "      AXGroup\n"
                "        AXPopUpButton AXValue=\"Vocals\"\n"
                "        AXTextField AXValue=\"loud\"\n"
                "        AXButton\n");
    }

    // From the message with this number on, so many go unanswered.
    void hang(std::uint64_t first, std::uint64_t count) {
        screen.watchReads([this, first = screen.reads() + first, count](const MemoryScreen::Read& read) {
            screen.answerAfter(clock, read.number >= first && read.number < first + count ? 6s : 0s);
            return true;
        });
    }

    // A strip with this name and comment, this many groups below the window.
    void showDeepStrip(int groups) {
        showMix("");
        Element group = at("mix");
        for (int i = 1; i < groups; ++i) {
            const Element next = screen.add({{"AXRole", "AXGroup"}});
            screen.append(group, "AXChildren", next);
            group = next;
        }
        screen.append(group, "AXChildren", strip("Kick", "deep"));
    }
};

TEST_F(PTMixCommentsTest, PairsTheNamesOfTheStripsWithTheirComments) {
    showMix("      AXGroup\n"
            "        AXGroup\n"
            "          AXSlider\n"
            "          AXPopUpButton AXValue=\"Kick\"\n"
            "          AXTextField AXValue=\"tight\"\n"
            "        AXGroup\n"
            "          AXTextField AXValue=\"コメント\"\n"
            "          AXPopUpButton AXValue=\"Snare\"\n");
    EXPECT_EQ(read(), (Comments{{"Kick", "tight"}, {"Snare", "コメント"}}));
}

TEST_F(PTMixCommentsTest, AnEmptyCommentIsThere) {
    showMix("      AXGroup\n"
            "        AXPopUpButton AXValue=\"Kick\"\n"
            "        AXTextField AXValue=\"\"\n");
    EXPECT_EQ(read(), (Comments{{"Kick", ""}}));
}

TEST_F(PTMixCommentsTest, AFieldThatCannotBeReadIsAnEmptyCommentAndStillTheFirst) {
    showMix("      AXGroup\n"
            "        AXPopUpButton AXValue=\"Kick\"\n"
            "        AXTextField AXValue=?\n"
            "        AXTextField AXValue=\"second\"\n"
            "      AXGroup\n"
            "        AXPopUpButton AXValue=\"Snare\"\n"
            "        AXTextField\n");
    EXPECT_EQ(read(), (Comments{{"Kick", ""}, {"Snare", ""}}));
}

TEST_F(PTMixCommentsTest, TheFirstFieldIsTheComment) {
    showMix("      AXGroup\n"
            "        AXTextField AXValue=\"first\"\n"
            "        AXPopUpButton AXValue=\"Kick\"\n"
            "        AXTextField AXValue=\"second\"\n");
    EXPECT_EQ(read(), (Comments{{"Kick", "first"}}));
}

TEST_F(PTMixCommentsTest, ThePopUpThatShowsAKnownNameIsTheName) {
    showMix("      AXGroup\n"
            "        AXPopUpButton AXValue=\"Input 1\"\n"
            "        AXTextField AXValue=\"comment\"\n"
            "        AXPopUpButton AXValue=\"Snare\"\n"
            "        AXPopUpButton AXValue=\"Snare\"\n"
            "        AXPopUpButton AXValue=\"Output 1-2\"\n"
            "        AXPopUpButton AXValue=?\n");
    EXPECT_EQ(read(), (Comments{{"Snare", "comment"}}));
}

// An output that is routed to a track has the track's name. Which pop-up is the strip's own is not known.
TEST_F(PTMixCommentsTest, AStripThatShowsTwoKnownNamesHasNoComment) {
    showMix("      AXGroup\n"
            "        AXPopUpButton AXValue=\"Kick\"\n"
            "        AXTextField AXValue=\"whose?\"\n"
            "        AXPopUpButton AXValue=\"Snare\"\n"
            "        AXGroup\n"
            "          AXPopUpButton AXValue=\"Snare\"\n"
            "          AXTextField AXValue=\"inside\"\n"
            "      AXGroup\n"
            "        AXPopUpButton AXValue=\"Vocals\"\n"
            "        AXTextField AXValue=\"loud\"\n");
    EXPECT_EQ(read(), (Comments{{"Vocals", "loud"}}));
}

TEST_F(PTMixCommentsTest, NamesAreComparedInComposedFormAndReturnedAsTheyAreKnown) {
    showMix("      AXGroup\n"
            "        AXPopUpButton AXValue=\"Zoe\u0308\"\n"
            "        AXTextField AXValue=\"cafe\u0301\"\n"
            "      AXGroup\n"
            "        AXPopUpButton AXValue=\"\u30D9\u30B9\"\n"
            "        AXTextField AXValue=\"DI\"\n");
    EXPECT_EQ(read({"Zo\u00EB", "\u30D8\u3099\u30B9"}),
              (Comments{{"Zo\u00EB", "caf\u00E9"}, {"\u30D8\u3099\u30B9", "DI"}}));
}

TEST_F(PTMixCommentsTest, APopUpWithAnUnknownNameMakesNoStripAndTheWalkGoesOnInside) {
    showMix("      AXGroup\n"
            "        AXPopUpButton AXValue=\"Unknown\"\n"
            "        AXTextField AXValue=\"outer\"\n"
            "        AXGroup\n"
            "          AXPopUpButton AXValue=\"Kick\"\n"
            "          AXTextField AXValue=\"inner\"\n");
    EXPECT_EQ(read(), (Comments{{"Kick", "inner"}}));
}

TEST_F(PTMixCommentsTest, APopUpWithoutAFieldMakesNoStripAndTheWalkGoesOnInside) {
    showMix("      AXGroup\n"
            "        AXPopUpButton AXValue=\"Kick\"\n"
            "          AXGroup\n"
            "            AXTextField AXValue=\"inner\"\n"
            "            AXPopUpButton AXValue=\"Snare\"\n");
    EXPECT_EQ(read(), (Comments{{"Snare", "inner"}}));
}

TEST_F(PTMixCommentsTest, AFieldOneLevelDeeperIsNotTheCommentOfThePopUp) {
    showMix("      AXGroup\n"
            "        AXPopUpButton AXValue=\"Kick\"\n"
            "        AXGroup\n"
            "          AXTextField AXValue=\"deeper\"\n");
    EXPECT_EQ(read(), std::nullopt);
}

TEST_F(PTMixCommentsTest, InsideAStripNothingIsLookedAt) {
    showMix("      AXGroup\n"
            "        AXGroup\n"
            "          AXPopUpButton AXValue=\"Snare\"\n"
            "          AXTextField AXValue=\"inside\"\n"
            "        AXPopUpButton AXValue=\"Kick\"\n"
            "        AXTextField AXValue=\"outside\"\n");
    EXPECT_EQ(read(), (Comments{{"Kick", "outside"}}));
    // Windows, title and the window's list; the group and its three.
    EXPECT_EQ(screen.reads(), 3u + 4);
}

TEST_F(PTMixCommentsTest, TheWindowItselfMayBeAStrip) {
    showMix("      AXPopUpButton AXValue=\"Kick\"\n"
            "      AXTextField AXValue=\"comment\"\n");
    EXPECT_EQ(read(), (Comments{{"Kick", "comment"}}));
}

TEST_F(PTMixCommentsTest, OfTwoStripsOfOneNameTheLaterCounts) {
    showMix("      AXGroup\n"
            "        AXGroup\n"
            "          AXPopUpButton AXValue=\"Kick\"\n"
            "          AXTextField AXValue=\"deeper, yet earlier\"\n"
            "      AXGroup\n"
            "        AXPopUpButton AXValue=\"Kick\"\n"
            "        AXTextField AXValue=\"later\"\n");
    EXPECT_EQ(read(), (Comments{{"Kick", "later"}}));
}

TEST_F(PTMixCommentsTest, NamesAreComparedExactly) {
    showMix("      AXGroup\n"
            "        AXPopUpButton AXValue=\"Kick \"\n"
            "        AXTextField AXValue=\"a blank more\"\n"
            "      AXGroup\n"
            "        AXPopUpButton AXValue=\"1. Snare\"\n"
            "        AXTextField AXValue=\"numbered\"\n"
            "      AXGroup\n"
            "        AXPopUpButton AXValue=\"vocals\"\n"
            "        AXTextField AXValue=\"small\"\n");
    EXPECT_EQ(read(), std::nullopt);
    EXPECT_EQ(read({"1. Snare", "Kick "}), (Comments{{"1. Snare", "numbered"}, {"Kick ", "a blank more"}}));
}

TEST_F(PTMixCommentsTest, OtherRolesAreNeitherNameNorComment) {
    showMix("      AXGroup\n"
            "        AXMenuButton AXValue=\"Kick\"\n"
            "        AXTextField AXValue=\"a field\"\n"
            "      AXGroup\n"
            "        AXPopUpButton AXValue=\"Snare\"\n"
            "        AXTextArea AXValue=\"an area\"\n"
            "      AXGroup\n"
            "        - AXValue=\"Vocals\"\n"
            "        AXTextField AXValue=\"a field\"\n");
    EXPECT_EQ(read(), std::nullopt);
}

TEST_F(PTMixCommentsTest, LooksTwelveLevelsBelowTheWindow) {
    showDeepStrip(12);
    EXPECT_EQ(read(), (Comments{{"Kick", "deep"}}));
}

TEST_F(PTMixCommentsTest, LooksNoDeeperThanThat) {
    showDeepStrip(13);
    EXPECT_EQ(read(), std::nullopt);
}

TEST_F(PTMixCommentsTest, TheWindowIsTheFirstWhoseTitleBeginsSo) {
    show("application com.avid.ProTools 501\n"
         "  AXWindows:\n"
         "    AXWindow &remix AXTitle=\"Remix\"\n"
         "    AXWindow &small AXTitle=\"mix: Song\"\n"
         "    AXWindow &untitled\n"
         "    AXWindow &mix AXTitle=\"ミックス: 曲\"\n"
         "    AXWindow &second AXTitle=\"Mix: Song\"\n");
    for (const char* label : {"remix", "small", "untitled", "mix", "second"})
        screen.append(at(label), "AXChildren", strip("Kick", label));
    EXPECT_EQ(read(), (Comments{{"Kick", "mix"}}));
    screen.set(at("mix"), "AXTitle", "編集: 曲");
    EXPECT_EQ(read(), (Comments{{"Kick", "second"}}));
    screen.set(at("second"), "AXTitle", "Mix");
    EXPECT_EQ(read(), (Comments{{"Kick", "second"}}));
    screen.set(at("second"), "AXTitle", "Edit: Song");
    EXPECT_EQ(read(), std::nullopt);
}

TEST_F(PTMixCommentsTest, WithoutTheMixWindowOrAStripThereIsNothing) {
    show("application com.avid.ProTools 501\n"
         "  AXWindows:\n"
         "    AXWindow AXTitle=\"Edit: Song\"\n");
    EXPECT_EQ(read(), std::nullopt);
    showMix("");
    screen.quit(501);
    EXPECT_EQ(read(), std::nullopt);
}

TEST_F(PTMixCommentsTest, WithoutKnownNamesNothingIsAsked) {
    showMix("");
    EXPECT_EQ(read({}), std::nullopt);
    EXPECT_EQ(screen.calls(), 0u);
}

TEST_F(PTMixCommentsTest, WithoutPermissionNothingIsReadAndNobodyIsPrompted) {
    showMix("      AXGroup\n"
            "        AXPopUpButton AXValue=\"Kick\"\n"
            "        AXTextField AXValue=\"tight\"\n");
    screen.setTrusted(false);
    EXPECT_EQ(read(), std::nullopt);
    EXPECT_EQ(screen.calls(), 1u);
    EXPECT_EQ(screen.prompts(), 0);
}

TEST_F(PTMixCommentsTest, WithoutProToolsThereIsNothing) {
    show("application com.example.Other 501\n"
         "  AXWindows:\n"
         "    AXWindow AXTitle=\"Mix: Song\"\n"
         "      AXPopUpButton AXValue=\"Kick\"\n"
         "      AXTextField AXValue=\"not its\"\n");
    EXPECT_EQ(read(), std::nullopt);
    EXPECT_EQ(screen.reads(), 0u);
}

TEST_F(PTMixCommentsTest, ReadsGrowWithTheElementsAndNotFaster) {
    showMix("      AXGroup &strips\n");
    std::vector<std::string> known;
    // Five elements a strip, of which one slider and one button are of no interest.
    for (const auto& [strips, reads] : std::map<std::size_t, std::uint64_t>{{20, 104}, {200, 1'004}, {4'000, 20'004}}) {
        for (; known.size() < strips; known.push_back("Audio " + std::to_string(known.size())))
            screen.append(at("strips"), "AXChildren", strip("Audio " + std::to_string(known.size()), "comment", 2));
        const std::uint64_t before = screen.reads();
        ASSERT_EQ(read(known).value_or(Comments()).size(), strips);
        EXPECT_EQ(screen.reads() - before, reads);
    }
}

TEST_F(PTMixCommentsTest, ReadsGrowWithTheElementsThatAreNoStripsToo) {
    for (const int elements : {100, 1'000, 20'000}) {
        MemoryScreen other;
        const Element window = other.add({{"AXTitle", "Mix"}});
        other.append(other.launch("com.avid.ProTools", process), "AXWindows", window);
        for (int i = 0; i < elements; ++i)
            other.append(window, "AXChildren", other.add({{"AXRole", "AXGroup"}}));
        EXPECT_FALSE(PTMixComments::read(other, clock, {"Kick"}));
        // Windows, title and the window's list; each element.
        EXPECT_EQ(other.reads(), 3u + static_cast<unsigned>(elements));
    }
}

TEST_F(PTMixCommentsTest, AReadThatFailsNeverPutsACommentOnAnotherTrack) {
    showMix("      AXGroup\n"
            "        AXGroup\n"
            "          AXPopUpButton AXValue=\"Kick\"\n"
            "          AXTextField AXValue=\"tight\"\n"
            "        AXGroup\n"
            "          AXPopUpButton AXValue=\"Snare\"\n"
            "          AXTextField AXValue=\"loose\"\n");
    const Comments kick{{"Kick", "tight"}};
    const Comments snare{{"Snare", "loose"}};
    const std::vector<std::optional<Comments>> outcomes{
        {},    {},    {}, {}, // windows, title, the window's list, the group
        snare, kick,          // the strips
        snare, snare,         // pop-up and field of the first
        kick,  kick,          // of the second
    };
    for (std::size_t i = 0; i < outcomes.size(); ++i) {
        failReads([failing = screen.reads() + 1 + i](std::uint64_t number) { return number == failing; });
        EXPECT_EQ(read(), outcomes[i]) << i;
    }
}

TEST_F(PTMixCommentsTest, AStripThatVanishesWhileItReadsIsAbsent) {
    showMix("      AXGroup &kick\n"
            "        AXPopUpButton AXValue=\"Kick\"\n"
            "        AXTextField AXValue=\"tight\"\n"
            "      AXGroup\n"
            "        AXPopUpButton AXValue=\"Snare\"\n"
            "        AXTextField AXValue=\"loose\"\n");
    screen.watchReads([&](const MemoryScreen::Read& read) {
        if (read.number == 6) screen.remove(at("kick")); // its pop-up
        return true;
    });
    EXPECT_EQ(read(), (Comments{{"Snare", "loose"}}));
}

TEST_F(PTMixCommentsTest, AReadThatIsRefusedInTheMiddleEndsIt) {
    showThreeStrips();
    screen.watchReads([&](const MemoryScreen::Read& read) {
        if (read.number == 10) screen.setRefusing(true);
        return true;
    });
    EXPECT_EQ(reading(), std::unexpected(NoReading::refused));
    EXPECT_EQ(screen.reads(), 10U);
}

TEST_F(PTMixCommentsTest, AStripWithAnUnansweredMessageHasNoComment) {
    showThreeStrips();
    for (const std::uint64_t pause : {7U, 9U, 12U}) { // pop-up of the first, pop-up and output of the second
        hang(pause, 1);
        const TimePoint began = clock.now();
        EXPECT_EQ(read(), (pause < 8 ? Comments{{"Snare", "loose"}, {"Vocals", "loud"}}
                                     : Comments{{"Kick", "tight"}, {"Vocals", "loud"}}))
            << pause;
        EXPECT_EQ(clock.now() - began, 1s);
    }
}

TEST_F(PTMixCommentsTest, TwoUnansweredMessagesInARowEndTheRead) {
    showThreeStrips();
    const std::uint64_t whole = 15;
    for (std::uint64_t first = 1; first < whole; ++first) {
        hang(first, 2);
        const std::uint64_t before = screen.reads();
        const TimePoint began = clock.now();
        const auto found = reading();
        EXPECT_LE(clock.now() - began, 2s);
        if (found) continue; // after the first unanswered message there was nothing more to ask
        EXPECT_EQ(found.error(), first <= 3 ? found.error() : NoReading::noAnswer) << first;
        EXPECT_LE(screen.reads() - before, first + 1);
    }
}

TEST_F(PTMixCommentsTest, WhatWasReadInTimeCounts) {
    showMix("      AXGroup &strips\n");
    std::vector<std::string> known;
    for (; known.size() < 50; known.push_back("Audio " + std::to_string(known.size())))
        screen.append(at("strips"), "AXChildren", strip("Audio " + std::to_string(known.size()), "comment"));
    screen.answerAfter(clock, 100ms); // 4 messages and one for each strip; then two for each
    EXPECT_EQ(read(known).value_or(Comments()).size(), 23U);
    EXPECT_EQ(clock.now() - TimePoint{}, 10s);
}

TEST_F(PTMixCommentsTest, AWindowInItselfComesToAnEndAndItsStripsAreFound) {
    showMix("      AXGroup &group AXChildren=[@strip @group @group @mix @group]\n"
            "      AXGroup &strip\n"
            "        AXPopUpButton AXValue=\"Kick\"\n"
            "        AXTextField AXValue=\"tight\"\n");
    EXPECT_EQ(read(), (Comments{{"Kick", "tight"}}));
    EXPECT_LE(screen.reads(), 500'000u);
}

} // namespace
} // namespace lumbrine
