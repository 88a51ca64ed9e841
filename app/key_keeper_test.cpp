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
    const fs::path state = folder / "state/lumbrine";
    const fs::path path = state / "keys";
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
    const NullComputer computer{{{"QV_NO_BONJOUR", "1"}}};
    const NullComputer pairedComputer{{{"QV_NO_BONJOUR", "1"}, {"LUMBRINE_CLIENTS", "paired"}}};
    NullStreams streams;
    NlohmannJSON json{text};
    NoAccessibility accessibility;
    std::shared_ptr<ReceiverModel> modelOn(const SystemInfo& system) {
        return ReceiverModel::create(
            {runtime, midi, sockets, advertiser, system, streams, json, accessibility, {}, &secrets}, text,
            [](const std::string&) {});
    }
};

TEST_F(KeyKeeperTest, TellsTheReceiverTheKeysAndFollowsTheFile) {
    const auto model = modelOn(pairedComputer);
    const KeyKeeper keeper(runtime, state, secrets, model, text);
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

TEST_F(KeyKeeperTest, HasAPageOfTheKeysAndForgetsThem) {
    const auto model = modelOn(pairedComputer);
    KeyKeeper keeper(runtime, state, secrets, model, text);
    model->start();
    file.keyNamed("guest");
    runtime.runFor(KeyKeeper::interval);
    ASSERT_EQ(keeper.page().rows.size(), 2U);
    EXPECT_EQ(keeper.page().rows[1].name, "guest");
    EXPECT_EQ(keeper.page().rows[1].use, "not used since the start");
    keeper.forget("guest");
    EXPECT_EQ(keeper.page().rows.size(), 1U);
    keeper.forgetAll();
    EXPECT_TRUE(keeper.page().rows.empty());
    EXPECT_TRUE(file.read().empty());
}

TEST_F(KeyKeeperTest, KeepsWhetherOnlyPairedClientsAreLetIn) {
    {
        const auto model = modelOn(computer);
        KeyKeeper keeper(runtime, state, secrets, model, text);
        EXPECT_FALSE(keeper.page().onlyPaired);
        EXPECT_EQ(keeper.page().pairedAdvice, "");
        keeper.letOnlyPairedIn(true);
        EXPECT_TRUE(keeper.page().onlyPaired);
    }
    const auto model = modelOn(computer);
    KeyKeeper keeper(runtime, state, secrets, model, text);
    EXPECT_TRUE(keeper.page().onlyPaired);
    model->start();
    network.host("192.168.1.66");
    network.forge("192.168.1.66", 5000, "192.168.1.10", 52700, Bytes{0x01, 0x00});
    runtime.runFor(seconds(0.01));
    EXPECT_EQ(model->published().health.strangers, 1U);
    keeper.letOnlyPairedIn(false);
    EXPECT_FALSE(keeper.page().onlyPaired);
}

TEST_F(KeyKeeperTest, ChangesNothingThatTheEnvironmentDecides) {
    const auto model = modelOn(pairedComputer);
    KeyKeeper keeper(runtime, state, secrets, model, text);
    keeper.letOnlyPairedIn(false);
    EXPECT_TRUE(keeper.page().onlyPaired);
    EXPECT_NE(keeper.page().pairedAdvice, "");
}

} // namespace
} // namespace lumbrine
