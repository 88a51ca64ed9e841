#include "screen/pt_track_list.h"
#include "screen/testing/screen_test.h"

namespace lumbrine {
namespace {

using namespace std::chrono_literals;
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

    std::optional<Snapshot> read() { return broughtBy(PTTrackList::read(screen, clock)); }

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
         "      AXTable &table AXDescription=\"Track List\"\n"
         "      AXTable AXDescription=\"Track List\"\n"
         "    AXWindow\n"
         "      AXTable AXDescription=\"Track List\"\n");
    screen.append(at("table"), "AXChildren", row("Kick"));
    EXPECT_EQ(names(), Names{"Kick"});
}

TEST_F(PTTrackListTest, ATableDeeperInItsWindowIsNotFound) {
    show("application com.avid.ProTools 501\n"
         "  AXWindows:\n"
         "    AXWindow\n"
         "      AXGroup &group\n");
    const Element table = screen.add({{"AXRole", "AXTable"}, {"AXDescription", "Track List"}});
    screen.set(table, "AXChildren", std::vector{row("Kick")});
    screen.append(at("group"), "AXChildren", table);
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
    for (const auto& [size, reads] : std::map<int, std::uint64_t>{{100, 304}, {1'000, 3'004}, {20'000, 60'004}}) {
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
    const std::vector<Outcome> outcomes{
        nothing,     nothing,     nothing,     nothing, // windows, children, the table's role, rows
        secondAlone, secondAlone, secondAlone,          // the row, its cell, the text in it
        firstAlone,  firstAlone,  firstAlone,           // the same of the second row
    };
    showTable({row("Kick"), row("Snare", true)});
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
        if (read.number == 8) screen.remove(read.element); // the second row
        return true;
    });
    const auto snapshot = read();
    ASSERT_TRUE(snapshot);
    EXPECT_EQ(snapshot->names, (Names{"Kick", "Bass"}));
    EXPECT_EQ(snapshot->selectedIndex, 2);
}

TEST_F(PTTrackListTest, AReadThatIsRefusedInTheMiddleEndsIt) {
    showTable({row("Kick"), row("Snare")});
    screen.watchReads([&](const MemoryScreen::Read& read) {
        if (read.number == 8) screen.setRefusing(true);
        return true;
    });
    EXPECT_EQ(PTTrackList::read(screen, clock), std::unexpected(NoReading::refused));
    EXPECT_EQ(screen.reads(), 8U);
}

TEST_F(PTTrackListTest, OneUnansweredMessageCostsItsRowAndTwoEndTheRead) {
    showTable({row("Kick"), row("Snare"), row("Bass")});
    for (const std::uint64_t count : {1U, 2U}) {
        screen.watchReads([&, from = screen.reads()](const MemoryScreen::Read& read) {
            const bool hangs = read.number > from + 7 && read.number <= from + 7 + count; // the second row
            screen.answerAfter(clock, hangs ? 6s : 0s);
            return true;
        });
        const TimePoint began = clock.now();
        const auto snapshot = PTTrackList::read(screen, clock);
        EXPECT_EQ(clock.now() - began, seconds(static_cast<double>(count)));
        if (count == 1) {
            ASSERT_TRUE(snapshot);
            EXPECT_EQ(snapshot->names, (Names{"Kick", "Bass"}));
        } else {
            EXPECT_EQ(snapshot, std::unexpected(NoReading::noAnswer));
        }
    }
}

TEST_F(PTTrackListTest, AListThatTakesTooLongIsNone) {
    std::vector<Element> rows;
    for (int i = 0; i < 40; ++i)
        rows.push_back(row("Audio " + std::to_string(i)));
    showTable(rows);
    screen.answerAfter(clock, 80ms); // 124 messages
    EXPECT_TRUE(PTTrackList::read(screen, clock));
    EXPECT_EQ(clock.now() - TimePoint{}, 9'920ms);
    screen.answerAfter(clock, 90ms);
    EXPECT_EQ(PTTrackList::read(screen, clock), std::unexpected(NoReading::tooLong));
    EXPECT_EQ(clock.now() - TimePoint{}, 9'920ms + 10'080ms);
}

TEST_F(PTTrackListTest, NamesComeInComposedForm) {
    showTable({row("Zoe\u0308"), row("\u30D8\u309A\u30A2")});
    EXPECT_EQ(names(), (Names{"Zo\u00EB", "\u30DA\u30A2"}));
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
