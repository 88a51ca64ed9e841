#include "platform/linux/user_settings.h"

#include <map>

namespace lumbrine {
namespace {

using Variables = std::map<std::string, std::string>;
using Languages = std::vector<std::string>;

Languages languagesIn(const Variables& variables) {
    return languagesOf([&variables](const std::string& name) -> std::optional<std::string> {
        const auto found = variables.find(name);
        if (found == variables.end()) return std::nullopt;
        return found->second;
    });
}

TEST(Languages, AreNoneInAnEmptyEnvironment) {
    EXPECT_EQ(languagesIn({}), Languages{});
}

TEST(Languages, AreTakenFromLanguageBeforeAllOthers) {
    EXPECT_EQ(languagesIn({{"LANGUAGE", "ja:en_GB:en"}, {"LC_ALL", "de_DE.UTF-8"}, {"LANG", "fr_FR.UTF-8"}}),
              (Languages{"ja", "en_GB", "en"}));
}

TEST(Languages, FallBackInTheOrderThatLocalesHave) {
    EXPECT_EQ(languagesIn({{"LC_ALL", "ja_JP.UTF-8"}, {"LC_MESSAGES", "de_DE"}, {"LANG", "C"}}),
              Languages{"ja_JP.UTF-8"});
    EXPECT_EQ(languagesIn({{"LC_MESSAGES", "de_DE"}, {"LANG", "C"}}), Languages{"de_DE"});
    EXPECT_EQ(languagesIn({{"LANG", "en_US.UTF-8"}}), Languages{"en_US.UTF-8"});
}

TEST(Languages, AreNotTakenFromAVariableThatIsSetButEmpty) {
    EXPECT_EQ(languagesIn({{"LANGUAGE", ""}, {"LC_ALL", ""}, {"LC_MESSAGES", ""}, {"LANG", "ja_JP"}}),
              Languages{"ja_JP"});
    EXPECT_EQ(languagesIn({{"LANGUAGE", ""}, {"LANG", ""}}), Languages{});
}

TEST(Languages, PassOverEmptyEntriesOfTheList) {
    EXPECT_EQ(languagesIn({{"LANGUAGE", ":ja::en:"}}), (Languages{"ja", "en"}));
    EXPECT_EQ(languagesIn({{"LANGUAGE", "::"}, {"LANG", "ja_JP"}}), Languages{"ja_JP"});
}

TEST(PrettyHostName, IsAbsentWhereItIsNotGiven) {
    EXPECT_EQ(prettyHostName(""), std::nullopt);
    EXPECT_EQ(prettyHostName("ICON_NAME=computer-laptop\nCHASSIS=laptop\n"), std::nullopt);
    EXPECT_EQ(prettyHostName("#PRETTY_HOSTNAME=Studio\n"), std::nullopt);
}

TEST(PrettyHostName, IsReadWithAndWithoutQuotes) {
    EXPECT_EQ(prettyHostName("CHASSIS=desktop\nPRETTY_HOSTNAME=Studio\n"), "Studio");
    EXPECT_EQ(prettyHostName("PRETTY_HOSTNAME=\"Anna's Studio\"\n"), "Anna's Studio");
    EXPECT_EQ(prettyHostName("PRETTY_HOSTNAME='Big \"B\" $HOME \\'"), "Big \"B\" $HOME \\");
    EXPECT_EQ(prettyHostName("PRETTY_HOSTNAME=\"スタジオ\""), "スタジオ");
}

TEST(PrettyHostName, ResolvesBackslashesAsAShellWould) {
    EXPECT_EQ(prettyHostName(R"(PRETTY_HOSTNAME="a \"b\" \\ \$ \` \n")"), R"(a "b" \ $ ` \n)");
    EXPECT_EQ(prettyHostName(R"(PRETTY_HOSTNAME=Studio\ One two)"), "Studio One");
}

TEST(PrettyHostName, EndsAtTheLineEndOfAnySystem) {
    EXPECT_EQ(prettyHostName("PRETTY_HOSTNAME=Studio\r\nCHASSIS=vm\r\n"), "Studio");
}

TEST(PrettyHostName, IsAbsentWhenEmptyOrBadlyQuoted) {
    EXPECT_EQ(prettyHostName("PRETTY_HOSTNAME=\n"), std::nullopt);
    EXPECT_EQ(prettyHostName("PRETTY_HOSTNAME=\"\"\n"), std::nullopt);
    EXPECT_EQ(prettyHostName("PRETTY_HOSTNAME=\"Studio\n"), std::nullopt);
}

TEST(PrettyHostName, IsTheLastOneGiven) {
    EXPECT_EQ(prettyHostName("PRETTY_HOSTNAME=Old\nPRETTY_HOSTNAME=New\n"), "New");
}

std::optional<std::string> stateFolderWith(const Variables& variables) {
    return stateFolderIn([&variables](const std::string& name) -> std::optional<std::string> {
        const auto found = variables.find(name);
        if (found == variables.end()) return std::nullopt;
        return found->second;
    });
}

TEST(StateFolder, IsWhereTheSystemKeepsTheStateOfAUsersPrograms) {
    EXPECT_EQ(stateFolderWith({{"HOME", "/home/ann"}}), "/home/ann/.local/state/lumbrine");
    EXPECT_EQ(stateFolderWith({{"HOME", "/home/ann"}, {"XDG_STATE_HOME", "/state"}}), "/state/lumbrine");
    EXPECT_EQ(stateFolderWith({{"HOME", "/home/ann"}, {"XDG_STATE_HOME", "relative"}}),
              "/home/ann/.local/state/lumbrine");
}

TEST(StateFolder, OfAServiceIsTheOneThatItsManagerMade) {
    EXPECT_EQ(stateFolderWith({{"HOME", "/home/ann"}, {"STATE_DIRECTORY", "/home/ann/.config/lumbrine:/other"}}),
              "/home/ann/.config/lumbrine");
}

TEST(StateFolder, IsNoneWithoutAHome) {
    EXPECT_EQ(stateFolderWith({}), std::nullopt);
    EXPECT_EQ(stateFolderWith({{"HOME", ""}}), std::nullopt);
}

} // namespace
} // namespace lumbrine
