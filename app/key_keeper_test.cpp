#include "app/key_keeper.h"
#include "platform/portable/nlohmann_json.h"
#include "platform/portable/no_accessibility.h"
#include "platform/virtual/null_platform.h"
#include "platform/virtual/toy_secrets.h"
#include "platform/virtual/virtual_network.h"
#include "platform/virtual/virtual_runtime.h"
#include "seal/seal_trailer.h"
#include "seal/session_key.h"

#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <set>

namespace lumbrine {
namespace {

namespace fs = std::filesystem;

class KeyFileTest : public testing::Test {
protected:
    ~KeyFileTest() override { fs::remove_all(folder); }

    static fs::path newFolder() {
        std::string pattern = (fs::temp_directory_path() / "keys-XXXXXX").string();
        return ::mkdtemp(pattern.data());
    }

    const fs::path folder = newFolder();
    const fs::path path = folder / "state/lumbrine/keys";
    ToySecrets secrets;
    KeyFile file{path, secrets};
};

TEST_F(KeyFileTest, HasOneKeyAtFirstAndKeepsIt) {
    EXPECT_TRUE(file.read().empty());
    const auto made = file.readOrMake();
    ASSERT_TRUE(made);
    EXPECT_EQ(made->size(), 1U);
    EXPECT_EQ(file.readOrMake(), made);
    EXPECT_EQ(file.read(), *made);
}

TEST_F(KeyFileTest, IsTheUsersAlone) {
    ASSERT_TRUE(file.readOrMake());
    EXPECT_EQ(fs::status(path).permissions(), fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(KeyFileTest, HasAKeyForEachName) {
    file.readOrMake();
    const auto guest = file.keyNamed("guest");
    ASSERT_TRUE(guest && *guest);
    EXPECT_EQ(file.keyNamed("guest"), guest);
    EXPECT_EQ(file.read().size(), 2U);
    EXPECT_NE(file.read()[0].key, file.read()[1].key);
}

TEST_F(KeyFileTest, HasSixteenKeysAtMostWithDifferentNumbers) {
    std::set<int> numbers;
    for (int i = 0; i < 16; ++i) {
        const auto key = file.keyNamed(std::to_string(i));
        ASSERT_TRUE(key && *key);
        numbers.insert(seal::numberOf(*seal::hashOf(secrets, (*key)->key)));
    }
    EXPECT_EQ(numbers.size(), 16U);
    EXPECT_EQ(*file.keyNamed("one more"), std::nullopt);
}

TEST_F(KeyFileTest, ForgetsOneKeyOrAll) {
    for (const char* name : {"one", "two", "three"})
        file.keyNamed(name);
    EXPECT_EQ(file.forget("two"), 1U);
    EXPECT_EQ(file.forget("two"), 0U);
    EXPECT_EQ(file.read().size(), 2U);
    EXPECT_EQ(file.forgetAll(), 2U);
    EXPECT_TRUE(file.read().empty());
}

TEST_F(KeyFileTest, SaysWhyItCannotBeWritten) {
    std::ofstream(folder / "state") << "no folder";
    EXPECT_FALSE(file.readOrMake());
}

// Its receiver lets only paired clients in.
class KeyKeeperTest : public KeyFileTest {
protected:
    // What the receiver sends to somebody who opens a session with this key.
    std::size_t answersTo(const PairingKey& key) {
        Bytes received(2048);
        const auto pairing = seal::hashOf(secrets, key);
        seal::Half half{};
        secrets.fillRandom(half);
        seal::SealedDatagram opening;
        opening.make(seal::openingMessage(7, half), *pairing, seal::numberOf(*pairing), seal::Direction::toReceiver, 7,
                     {});
        std::size_t answers = 0;
        network.onDatagram = [&](const std::string& host, std::uint16_t, ByteView) {
            answers += host.ends_with("192.168.1.10") ? 1 : 0;
        };
        network.host("192.168.1.66"); // where the answer goes
        network.forge("192.168.1.66", 5000, "192.168.1.10", 52700, opening.bytes());
        runtime.runFor(seconds(0.01));
        network.onDatagram = nullptr;
        return answers;
    }

    const Bilingual text{false};
    VirtualRuntime runtime;
    VirtualNetwork network{runtime};
    DatagramSockets& sockets = network.host("192.168.1.10");
    NullMIDI midi;
    NullAdvertiser advertiser;
    NullComputer system{{{"QV_NO_BONJOUR", "1"}, {"LUMBRINE_CLIENTS", "paired"}}};
    NullStreams streams;
    NlohmannJSON json{text};
    NoAccessibility accessibility;
    std::shared_ptr<ReceiverModel> model =
        ReceiverModel::create({runtime, midi, sockets, advertiser, system, streams, json, accessibility, {}, &secrets},
                              text, [](const std::string&) {});
};

TEST_F(KeyKeeperTest, TellsTheReceiverTheKeysAndFollowsTheFile) {
    KeyKeeper keeper(runtime, KeyFile(path, secrets), model, text);
    model->start();
    const PairingKey first = file.read().front().key;
    EXPECT_EQ(answersTo(first), 1U);
    const PairingKey guest = (*file.keyNamed("guest"))->key;
    EXPECT_EQ(answersTo(guest), 0U);
    runtime.runFor(KeyKeeper::interval);
    EXPECT_EQ(answersTo(guest), 1U);
    file.forgetAll();
    runtime.runFor(KeyKeeper::interval);
    EXPECT_EQ(answersTo(first) + answersTo(guest), 0U);
    EXPECT_EQ(model->published().health.strangers, 1U);
}

} // namespace
} // namespace lumbrine
