// Which tracks the session page lists, and what it says of each.
#include "app/session_page.h"

namespace lumbrine {
namespace {

using testing::ElementsAre;

std::vector<std::string> namesOf(const SessionPage& page) {
    std::vector<std::string> names;
    for (const SessionRow& row : page.rows)
        names.push_back(row.name);
    return names;
}

// 20 tracks of which the surfaces show those from the ninth on.
PublishedState bigSession() {
    PublishedState published;
    published.bankOffset = 8;
    std::vector<std::string> displays;
    for (int i = 1; i <= 20; ++i)
        displays.push_back("T" + std::to_string(i));
    published.session = Session::of(displays);
    published.session.tracks[2].name = "ギターソロ";
    published.session.tracks[3].name = "Snare Top";
    published.session.tracks[3].comment = "too LOUD in the bridge";
    return published;
}

constexpr Bilingual inPlainEnglish(false);

TEST(SessionPage, ListsAllTracksAndTheStripsThatShowThem) {
    const SessionPage page = sessionPage(bigSession(), "", inPlainEnglish);
    ASSERT_EQ(page.rows.size(), 20U);
    EXPECT_EQ(page.rows[2].name, "ギターソロ");
    EXPECT_EQ(page.rows[7].strip, "");
    EXPECT_EQ(page.rows[8].strip, "1");
    EXPECT_EQ(page.rows[15].strip, "8");
    EXPECT_EQ(page.rows[16].strip, "");
    EXPECT_EQ(page.note, "20 of 20 tracks. Click one to bring it to the surfaces.");
}

TEST(SessionPage, FindsTracksByNameCommentAndNumber) {
    EXPECT_THAT(namesOf(sessionPage(bigSession(), "snare", inPlainEnglish)), ElementsAre("Snare Top"));
    EXPECT_THAT(namesOf(sessionPage(bigSession(), "loud", inPlainEnglish)), ElementsAre("Snare Top"));
    EXPECT_THAT(namesOf(sessionPage(bigSession(), "ソロ", inPlainEnglish)), ElementsAre("ギターソロ"));
    EXPECT_THAT(namesOf(sessionPage(bigSession(), "3", inPlainEnglish)), ElementsAre("ギターソロ", "T13"));
    EXPECT_EQ(sessionPage(bigSession(), "nothing like it", inPlainEnglish).note,
              "0 of 20 tracks. Click one to bring it to the surfaces.");
}

TEST(SessionPage, BelievesAStripMoreThanWhatIsKnownOfItsTrack) {
    PublishedState published = bigSession();
    published.session.tracks[8].fader = 0.25;
    published.session.tracks[8].mute = true;
    published.session.tracks[0].fader = 0.5;
    published.session.tracks[0].record = true;
    published.strips[0].shownFader = published.strips[0].fader = 0.75;
    published.strips[0].solo = true;
    const SessionPage page = sessionPage(published, "", inPlainEnglish);
    EXPECT_EQ(page.rows[8].fader, "75 %");
    EXPECT_EQ(page.rows[8].lights, "S");
    EXPECT_EQ(page.rows[0].fader, "50 %");
    EXPECT_EQ(page.rows[0].lights, "R");
}

TEST(SessionPage, SaysWhyItIsEmpty) {
    const SessionPage page = sessionPage({}, "", Bilingual(true));
    EXPECT_EQ(page.note, "トラックはまだ計測されていません。Pro Tools とスマートフォンが接続されると計測されます。");
    EXPECT_EQ(page.headings.size(), 6U);
}

} // namespace
} // namespace lumbrine
