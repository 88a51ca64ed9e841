#include "web/gateway/key_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>

namespace lumbrine::web {
namespace {

namespace fs = std::filesystem;

class KeyFile : public testing::Test {
protected:
    KeyFile() {
        std::string pattern = (fs::temp_directory_path() / "lumbrine-XXXXXX").string();
        folder = ::mkdtemp(pattern.data());
        path = folder / "state/lumbrine/web-key";
    }
    ~KeyFile() override { fs::remove_all(folder); }

    static void write(const fs::path& file, const std::string& text) {
        fs::create_directories(file.parent_path());
        std::ofstream(file) << text;
    }

    static fs::perms permissions(const fs::path& file) { return fs::status(file).permissions(); }

    fs::path folder;
    fs::path path;
};

using Variables = std::map<std::string, std::string>;

std::optional<std::string> pathWith(const Variables& variables) {
    return keyFilePath([&](const std::string& name) -> std::optional<std::string> {
        const auto variable = variables.find(name);
        if (variable == variables.end()) return std::nullopt;
        return variable->second;
    });
}

TEST(KeyFilePath, IsInTheUsersStateFolder) {
    EXPECT_EQ(pathWith({{"HOME", "/home/a"}}), "/home/a/.local/state/lumbrine/web-key");
    EXPECT_EQ(pathWith({{"HOME", "/home/a"}, {"XDG_STATE_HOME", "/s"}}), "/s/lumbrine/web-key");
    EXPECT_EQ(pathWith({{"HOME", "/home/a"}, {"XDG_STATE_HOME", "s"}}), "/home/a/.local/state/lumbrine/web-key");
    EXPECT_EQ(pathWith({{"HOME", ""}, {"XDG_STATE_HOME", ""}}), std::nullopt);
    EXPECT_EQ(pathWith({}), std::nullopt);
}

TEST(KeyInFile, IsAloneOnItsLine) {
    const std::string key = "742BCM0SCXPZA154Z02S9P89HC";
    EXPECT_TRUE(keyInFile(key));
    EXPECT_TRUE(keyInFile(key + "\n"));
    for (const std::string& text : {key + "\n\n", key + " \n", "\n" + key, key + "\r\n", key + key, std::string()})
        EXPECT_FALSE(keyInFile(text)) << text;
}

TEST_F(KeyFile, OfANewKeyIsReadAgain) {
    const auto made = makeKey(path);
    ASSERT_TRUE(made);
    EXPECT_EQ(readKey(path), *made);
}

TEST_F(KeyFile, HasAnotherKeyEachTime) {
    const auto first = makeKey(path);
    const auto second = makeKey(path);
    ASSERT_TRUE(first && second);
    EXPECT_NE(first->text(), second->text());
    EXPECT_EQ(readKey(path), *second);
}

TEST_F(KeyFile, IsTheUsersAlone) {
    ASSERT_TRUE(makeKey(path));
    EXPECT_EQ(permissions(path), fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(KeyFile, IsTheUsersAloneAlsoWhereAnotherLayBefore) {
    for (const std::string& old : {path.string(), path.string() + ".new"}) {
        write(old, "open to all");
        fs::permissions(old, fs::perms::all);
    }
    ASSERT_TRUE(makeKey(path));
    EXPECT_EQ(permissions(path), fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(KeyFile, WithoutAKeyHasNone) {
    EXPECT_FALSE(readKey(path));
    write(path, std::string(100'000, 'A'));
    EXPECT_FALSE(readKey(path));
    EXPECT_FALSE(readKey(folder)) << "a folder";
}

TEST_F(KeyFile, OfTheReceiverHasTheKeyToSealWithOnItsFirstLine) {
    EXPECT_FALSE(readSealKey(path));
    write(path, "742BCM0SCXPZA154Z02S9P89HC studio\n014D2PF2DBSQQG28T5CY4TQKFF Yuki\n");
    EXPECT_EQ(readSealKey(path), PairingKey::parse("742BCM0SCXPZA154Z02S9P89HC"));
    write(path, "014D2PF2DBSQQG28T5CY4TQKFF");
    EXPECT_EQ(readSealKey(path), PairingKey::parse("014D2PF2DBSQQG28T5CY4TQKFF"));
    write(path, "");
    EXPECT_FALSE(readSealKey(path));
}

TEST_F(KeyFile, ThatCannotBeMadeIsSaid) {
    write(folder / "file", "");
    const auto made = makeKey(folder / "file" / "web-key");
    ASSERT_FALSE(made);
    EXPECT_NE(made.error().find((folder / "file").string()), std::string::npos) << made.error();
}

} // namespace
} // namespace lumbrine::web
