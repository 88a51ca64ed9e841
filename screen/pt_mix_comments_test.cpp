#include "screen/pt_mix_comments.h"
#include "screen/testing/screen_test.h"

namespace lumbrine {
namespace {

using Comments = std::map<std::string, std::string>;

class PTMixCommentsTest : public ScreenTest {
protected:
    std::optional<Comments> read(const std::vector<std::string>& known = {"Kick", "Snare", "Vocals"}) {
        return PTMixComments::read(screen, known);
    }

    // A Mix window with these lines in it.
    void showMix(const std::string& lines) {
        show("application com.avid.ProTools 501\n"
             "  AXWindows:\n"
             "    AXWindow &mix AXTitle=\"Mix: Song\"\n" +
             lines);
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

TEST_F(PTMixCommentsTest, TheLastPopUpThatShowsAKnownNameIsTheName) {
    showMix("      AXGroup\n"
            "        AXPopUpButton AXValue=\"Kick\"\n"
            "        AXTextField AXValue=\"comment\"\n"
            "        AXPopUpButton AXValue=\"Snare\"\n"
            "        AXPopUpButton AXValue=\"Output 1-2\"\n"
            "        AXPopUpButton AXValue=?\n");
    EXPECT_EQ(read(), (Comments{{"Snare", "comment"}}));
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
    // Windows and title; lists of the window and the group; roles of the group and its three; two values.
    EXPECT_EQ(screen.reads(), 2u + 2 + 4 + 2);
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
    for (const auto& [strips, reads] : std::map<std::size_t, std::uint64_t>{{20, 165}, {200, 1'605}, {4'000, 32'005}}) {
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
        EXPECT_EQ(PTMixComments::read(other, {"Kick"}), std::nullopt);
        // Windows, title and the window's list; role and list of each element.
        EXPECT_EQ(other.reads(), 3u + 2 * static_cast<unsigned>(elements));
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
    const Comments both{{"Kick", "tight"}, {"Snare", "loose"}};
    const Comments withoutKicks{{"Kick", ""}, {"Snare", "loose"}};
    const Comments withoutSnares{{"Kick", "tight"}, {"Snare", ""}};
    const std::vector<std::optional<Comments>> outcomes{
        {},    {},    {},                          // windows, title, the window's list
        both,  {},                                 // role and list of the group
        both,  both,                               // roles of the strips
        snare, snare, snare, snare, withoutKicks,  // first strip: list, role, value, role, value
        kick,  kick,  kick,  kick,  withoutSnares, // second strip
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
        if (read.number == 7) screen.remove(at("kick")); // its pop-up's role is asked for
        return true;
    });
    EXPECT_EQ(read(), (Comments{{"Snare", "loose"}}));
}

TEST_F(PTMixCommentsTest, PermissionWithdrawnInTheMiddleLeavesWhatWasRead) {
    showMix("      AXGroup\n"
            "        AXPopUpButton AXValue=\"Kick\"\n"
            "        AXTextField AXValue=\"tight\"\n"
            "      AXGroup &snare\n"
            "        AXPopUpButton AXValue=\"Snare\"\n"
            "        AXTextField AXValue=\"loose\"\n");
    screen.watchReads([&](const MemoryScreen::Read& read) {
        if (read.element == at("snare") && read.attribute == "AXChildren") screen.setTrusted(false);
        return true;
    });
    EXPECT_EQ(read(), (Comments{{"Kick", "tight"}}));
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
