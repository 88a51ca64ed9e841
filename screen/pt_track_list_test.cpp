#include "screen/pt_track_list.h"
#include "screen/testing/screen_test.h"

namespace lumbrine {
namespace {

using Names = std::vector<std::string>;

class PTTrackListTest : public ScreenTest {
protected:
    // An Edit window whose table has these children.
    void showTable(const std::vector<Element>& children) {
        show("application com.avid.ProTools 501\n"
             "  AXWindows:\n"
             "    AXWindow AXTitle=\"Edit: Song\"\n"
             "      AXTable &table AXDescription=\"Track List\"\n");
        screen.set(at("table"), "AXChildren", children);
    }

    std::optional<Snapshot> read() { return PTTrackList::read(screen); }

    Names names() { return read().value_or(Snapshot()).names; }

    std::optional<int> selectedIndex() { return read().value_or(Snapshot()).selectedIndex; }

    Names namesOf(std::string_view rows) {
        show("application com.avid.ProTools 501\n"
             "  AXWindows:\n"
             "    AXWindow\n"
             "      AXTable AXDescription=\"Track List\"\n" +
             std::string(rows));
        return names();
    }
};

TEST_F(PTTrackListTest, ReturnsAllNamesInDisplayOrderAndTheSelectedRow) {
    showTable({row("Kick"), row("Snare", true), row("ベース")});
    const auto snapshot = read();
    ASSERT_TRUE(snapshot);
    EXPECT_EQ(snapshot->names, (Names{"Kick", "Snare", "ベース"}));
    EXPECT_EQ(snapshot->selectedIndex, 1);
}

TEST_F(PTTrackListTest, NamesComeWithoutTheirNumbers) {
    showTable({row("1. Kick"), row("2。 ドラム"), row("12. Vocals ")});
    EXPECT_EQ(names(), (Names{"Kick", "ドラム", "Vocals"}));
}

TEST_F(PTTrackListTest, NoRowSelectedIsNoIndex) {
    showTable({row("Kick"), row("Snare")});
    EXPECT_EQ(names().size(), 2u);
    EXPECT_EQ(selectedIndex(), std::nullopt);
}

TEST_F(PTTrackListTest, TheIndexCountsChildrenThatAreNoRows) {
    showTable({screen.add({{"AXRole", "AXColumn"}}), row("Kick"), row("Snare", true)});
    EXPECT_EQ(names(), (Names{"Kick", "Snare"}));
    EXPECT_EQ(selectedIndex(), 2);
}

TEST_F(PTTrackListTest, TheIndexCountsRowsWithoutAName) {
    showTable({row("Kick"), screen.add({{"AXRole", "AXRow"}}), row("Snare", true)});
    EXPECT_EQ(names(), (Names{"Kick", "Snare"}));
    EXPECT_EQ(selectedIndex(), 2);
}

TEST_F(PTTrackListTest, ARowWithoutANameIsNotTheSelectedOne) {
    showTable({screen.add({{"AXRole", "AXRow"}, {"AXSelected", true}}), row("Kick"), row("Snare", true)});
    EXPECT_EQ(selectedIndex(), 2);
}

TEST_F(PTTrackListTest, OfTwoSelectedRowsTheFirstCounts) {
    showTable({row("Kick"), row("Snare", true), row("Bass", true)});
    EXPECT_EQ(selectedIndex(), 1);
}

TEST_F(PTTrackListTest, ARowIsSelectedOnlyWhenItSaysSo) {
    const Element quiet = row("Kick");
    const Element strange = row("Snare");
    const Element wordy = row("Bass");
    screen.unset(quiet, "AXSelected");
    screen.set(strange, "AXSelected", MemoryScreen::OtherKind());
    screen.set(wordy, "AXSelected", "true");
    showTable({quiet, strange, wordy});
    EXPECT_EQ(names(), (Names{"Kick", "Snare", "Bass"}));
    EXPECT_EQ(selectedIndex(), std::nullopt);
}

TEST_F(PTTrackListTest, TheTextIsTheValueElseTheTitleOfTheFirstElementOfTheFirstCell) {
    EXPECT_EQ(namesOf("        AXRow\n"
                      "          AXCell\n"
                      "            AXStaticText AXValue=\"value\" AXTitle=\"title\"\n"
                      "            AXStaticText AXValue=\"second element\"\n"
                      "          AXCell\n"
                      "            AXStaticText AXValue=\"second cell\"\n"
                      "        AXRow\n"
                      "          AXCell\n"
                      "            AXStaticText AXValue=? AXTitle=\"title alone\"\n"
                      "        AXRow\n"
                      "          -\n"
                      "            - AXTitle=\"of any role\"\n"
                      "        AXRow\n"
                      "          AXCell\n"
                      "            AXStaticText AXValue=\"\" AXTitle=\"not asked for\"\n"),
              (Names{"value", "title alone", "of any role", ""}));
}

TEST_F(PTTrackListTest, RowsWithoutACellAnElementOrATextAreLeftOut) {
    EXPECT_EQ(namesOf("        AXRow\n"
                      "        AXRow AXChildren=[]\n"
                      "        AXRow AXChildren=?\n"
                      "        AXRow\n"
                      "          AXCell\n"
                      "          AXCell\n"
                      "            AXStaticText AXValue=\"not in the first cell\"\n"
                      "        AXRow\n"
                      "          AXCell\n"
                      "            AXImage\n"
                      "            AXStaticText AXValue=\"not the first element\"\n"
                      "        AXRow\n"
                      "          AXCell\n"
                      "            AXStaticText AXValue=true AXTitle=?\n"
                      "        AXGroup\n"
                      "          AXCell\n"
                      "            AXStaticText AXValue=\"no row\"\n"
                      "        -\n"
                      "          AXCell\n"
                      "            AXStaticText AXValue=\"of no role\"\n"
                      "        AXRow\n"
                      "          AXCell\n"
                      "            AXStaticText AXValue=\"Kick\"\n"),
              Names{"Kick"});
}

TEST_F(PTTrackListTest, WithoutASingleNameThereIsNoSnapshot) {
    showTable({screen.add({{"AXRole", "AXRow"}, {"AXSelected", true}})});
    EXPECT_FALSE(read());
    screen.set(at("table"), "AXChildren", std::vector<Element>());
    EXPECT_FALSE(read());
    screen.unset(at("table"), "AXChildren");
    EXPECT_FALSE(read());
}

TEST_F(PTTrackListTest, TheTableIsTheFirstOfThatRoleAndDescriptionAmongTheWindowsChildren) {
    show("application com.avid.ProTools 501\n"
         "  AXTable AXDescription=\"Track List\" AXTitle=\"in no window\"\n"
         "  AXWindows:\n"
         "    AXWindow\n"
         "    AXWindow\n"
         "      AXTable AXDescription=\"Groups\"\n"
         "      AXOutline AXDescription=\"Track List\"\n"
         "      AXTable AXDescription=\"Track List \"\n"
         "      AXTable AXDescription=\"track list\"\n"
         "      AXTable AXTitle=\"Track List\"\n"
         "      AXGroup\n"
         "        AXTable AXDescription=\"Track List\"\n"
         "    AXWindow\n"
         "      AXTable AXDescription=\"Track List\" AXHelp=\"the one\"\n"
         "      AXTable AXDescription=\"Track List\"\n"
         "    AXWindow\n"
         "      AXTable AXDescription=\"Track List\"\n");
    const auto table = PTTrackList::findTrackListTable(screen, app());
    ASSERT_TRUE(table);
    EXPECT_EQ(screen.attribute(*table, "AXHelp"), AttributeValue("the one"));
}

TEST_F(PTTrackListTest, ATableDeeperInItsWindowIsNotFound) {
    show("application com.avid.ProTools 501\n"
         "  AXWindows:\n"
         "    AXWindow\n"
         "      AXGroup &group\n");
    const Element table = screen.add({{"AXRole", "AXTable"}, {"AXDescription", "Track List"}});
    screen.set(table, "AXChildren", std::vector{row("Kick")});
    screen.append(at("group"), "AXChildren", table);
    EXPECT_FALSE(PTTrackList::findTrackListTable(screen, app()));
    EXPECT_FALSE(read());
}

TEST_F(PTTrackListTest, ATableWithoutRowsHidesALaterOne) {
    show("application com.avid.ProTools 501\n"
         "  AXWindows:\n"
         "    AXWindow\n"
         "      AXTable AXDescription=\"Track List\"\n"
         "    AXWindow\n"
         "      AXTable &second AXDescription=\"Track List\"\n");
    screen.append(at("second"), "AXChildren", row("Kick"));
    EXPECT_FALSE(read());
}

TEST_F(PTTrackListTest, WithoutPermissionNothingIsReadAndNobodyIsPrompted) {
    showTable({row("Kick")});
    screen.setTrusted(false);
    EXPECT_FALSE(read());
    EXPECT_EQ(screen.prompts(), 0);
    EXPECT_EQ(screen.reads(), 0u);
    EXPECT_EQ(screen.calls(), 1u);
    screen.setTrusted(true);
    EXPECT_EQ(names(), Names{"Kick"});
}

TEST_F(PTTrackListTest, WithoutProToolsThereIsNothing) {
    show("application com.example.Other 501\n"
         "  AXWindows:\n"
         "    AXWindow\n"
         "      AXTable &table AXDescription=\"Track List\"\n");
    screen.append(at("table"), "AXChildren", row("Kick"));
    EXPECT_FALSE(read());
    EXPECT_EQ(screen.reads(), 0u);
}

TEST_F(PTTrackListTest, OfTwoProToolsTheFirstIsRead) {
    showTable({row("Kick")});
    show("application com.avid.ProTools 502\n"
         "  AXWindows:\n"
         "    AXWindow\n"
         "      AXTable &other AXDescription=\"Track List\"\n");
    screen.append(at("other"), "AXChildren", row("Snare"));
    EXPECT_EQ(names(), Names{"Kick"});
    screen.quit(501);
    EXPECT_EQ(names(), Names{"Snare"});
    screen.quit(502);
    EXPECT_FALSE(read());
}

TEST_F(PTTrackListTest, ReadsGrowWithTheRowsAndNotFaster) {
    showTable({});
    int rows = 0;
    for (const auto& [size, reads] : std::map<int, std::uint64_t>{{100, 505}, {1'000, 5'005}, {20'000, 100'005}}) {
        for (; rows < size; ++rows)
            screen.append(at("table"), "AXChildren", row("Audio " + std::to_string(rows)));
        const std::uint64_t before = screen.reads();
        ASSERT_EQ(names().size(), static_cast<std::size_t>(size));
        EXPECT_EQ(screen.reads() - before, reads);
    }
}

TEST_F(PTTrackListTest, AReadThatFailsCostsItsRowOrTheWholeAndNoMore) {
    struct Outcome {
        Names names;
        std::optional<int> selectedIndex;
    };
    const Outcome nothing{{}, std::nullopt};
    const Outcome secondAlone{{"Snare"}, 1};
    const Outcome firstAlone{{"Kick"}, std::nullopt};
    const Outcome both{{"Kick", "Snare"}, 1};
    const Outcome byTitle{{"Title", "Snare"}, 1};
    const Outcome notSelected{{"Kick", "Snare"}, std::nullopt};
    const std::vector<Outcome> outcomes{
        nothing,     nothing,     nothing,     nothing,    nothing,     // windows, children, role, description, rows
        secondAlone, secondAlone, secondAlone, byTitle,    both,        // role, cells, elements, value, selected
        firstAlone,  firstAlone,  firstAlone,  firstAlone, notSelected, // the same of the second row
    };
    showTable({row("Kick"), row("Snare", true)});
    const auto text = [&](Element tableRow) {
        const auto cells = std::get<std::vector<Element>>(*screen.value(tableRow, "AXChildren"));
        return std::get<std::vector<Element>>(*screen.value(cells.at(0), "AXChildren")).at(0);
    };
    const auto rows = std::get<std::vector<Element>>(*screen.value(at("table"), "AXChildren"));
    screen.set(text(rows.at(0)), "AXTitle", "Title");
    for (std::size_t i = 0; i < outcomes.size(); ++i) {
        failReads([failing = screen.reads() + 1 + i](std::uint64_t number) { return number == failing; });
        const auto snapshot = read();
        EXPECT_EQ(snapshot.has_value(), !outcomes[i].names.empty()) << i;
        EXPECT_EQ(snapshot.value_or(Snapshot()).names, outcomes[i].names) << i;
        EXPECT_EQ(snapshot.value_or(Snapshot()).selectedIndex, outcomes[i].selectedIndex) << i;
    }
}

TEST_F(PTTrackListTest, RowsThatVanishWhileItReadsAreLeftOut) {
    showTable({row("Kick"), row("Snare"), row("Bass", true)});
    screen.watchReads([&](const MemoryScreen::Read& read) {
        if (read.number == 12) screen.remove(read.element); // the second row, after its role
        return true;
    });
    const auto snapshot = read();
    ASSERT_TRUE(snapshot);
    EXPECT_EQ(snapshot->names, (Names{"Kick", "Bass"}));
    EXPECT_EQ(snapshot->selectedIndex, 2);
}

TEST_F(PTTrackListTest, PermissionWithdrawnInTheMiddleLeavesWhatWasRead) {
    showTable({row("Kick"), row("Snare")});
    screen.watchReads([&](const MemoryScreen::Read& read) {
        if (read.number == 11) screen.setTrusted(false);
        return true;
    });
    EXPECT_EQ(names(), Names{"Kick"});
}

TEST_F(PTTrackListTest, AProToolsThatQuitsWhileItReadsLeavesNothing) {
    showTable({row("Kick")});
    screen.watchReads([&](const MemoryScreen::Read& read) {
        if (read.number == 2) screen.quit(process);
        return true;
    });
    EXPECT_FALSE(read());
}

TEST_F(PTTrackListTest, ATableOfItselfComesToAnEnd) {
    show("application com.avid.ProTools 501\n"
         "  AXWindows:\n"
         "    AXWindow &window AXChildren=[@window @window @table]\n"
         "  AXTable &table AXDescription=\"Track List\" AXChildren=[@table @row]\n"
         "  AXRow &row AXValue=\"Loop\" AXSelected=true AXChildren=[@row]\n");
    const auto snapshot = read();
    ASSERT_TRUE(snapshot);
    EXPECT_EQ(snapshot->names, Names{"Loop"});
    EXPECT_EQ(snapshot->selectedIndex, 1);
}

} // namespace
} // namespace lumbrine
