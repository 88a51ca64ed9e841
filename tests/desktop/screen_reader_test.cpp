// The window as a screen reader knows it: what each thing is called, what it shows, and what is announced.
#include "tests/desktop/desktop.h"
#include "tests/desktop/screen_reader.h"
#include "tests/end_to_end/client_socket.h"
#include "tests/end_to_end/receiver_process.h"
#include "tests/end_to_end/simulator_process.h"
#include "tests/interop/private_jack.h"

#include <algorithm>

namespace lumbrine::desktop {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::Field;
using testing::SizeIs;
using testing::StartsWith;

class LumbrineForAScreenReader : public testing::Test {
protected:
    LumbrineForAScreenReader() {
        std::map<std::string, std::string> variables = end_to_end::environmentFor({.port = port});
        variables["XDG_CONFIG_HOME"] = folder.path.string();
        variables["DBUS_SESSION_BUS_ADDRESS"] = bus.address();
        lumbrine = std::make_unique<interop::ChildProcess>(std::vector<std::string>{LUMBRINE_BIN_DIR "/lumbrine"},
                                                           interop::ChildProcess::Setup{.environment = variables});
        if (!bus.waitUntil([this] { return reader.knowsAProgram() && !reader.read().empty(); }))
            throw std::runtime_error("nothing to read: " + lumbrine->output());
    }

    std::vector<Element> strips() const {
        std::vector<Element> found = reader.read();
        std::erase_if(found, [](const Element& element) { return element.role != "slider"; });
        return found;
    }

    // Waits until something of that name is there.
    bool reads(const std::string& name) {
        return bus.waitUntil([&] {
            return std::ranges::any_of(reader.read(), [&](const Element& each) { return each.name.starts_with(name); });
        });
    }

    const interop::PrivateJack jack;
    const Desktop desktop{false};
    const interop::TemporaryFolder folder;
    const std::uint16_t port = end_to_end::freePort();
    MessageBus bus;
    ScreenReader reader{bus};
    std::unique_ptr<interop::ChildProcess> lumbrine;
};

TEST_F(LumbrineForAScreenReader, HasANameForWhateverTheKeyboardReaches) {
    std::vector<Element> nameless = reader.read();
    EXPECT_THAT(nameless, Contains(AllOf(Field(&Element::role, "push button"),
                                         Field(&Element::name, "All tracks of the session"))));
    std::erase_if(nameless, [](const Element& element) { return !element.focusable || !element.name.empty(); });
    for (const Element& element : nameless)
        ADD_FAILURE() << "a " << element.role << " without a name";
}

TEST_F(LumbrineForAScreenReader, ReadsTheRowsOfTheCardWithTheirStates) {
    EXPECT_TRUE(reads("Done: The ports “Lumbrine” and “Lumbrine B” are there."));
    EXPECT_TRUE(reads("To do: Pro Tools has not talked to “Lumbrine” yet."));
    EXPECT_TRUE(reads("To do: No phone has been heard yet."));
}

TEST_F(LumbrineForAScreenReader, ReadsEachStripWithItsNameValueAndState) {
    end_to_end::SimulatorProcess proTools({"--tracks", "8", "--no-scripting"});
    ASSERT_TRUE(reads("Pro Tools (HUI): Connected")) << lumbrine->output();
    proTools.type("fader 1 0.5");
    proTools.type("mute 2");
    proTools.type("select 3");
    const auto shows = [&] {
        const std::vector<Element> all = strips();
        return all.size() == 8 && all[1].description == "muted" && all[2].selected;
    };
    EXPECT_TRUE(bus.waitUntil(shows));
    const std::vector<Element> all = strips();
    ASSERT_THAT(all, SizeIs(8));
    const std::vector<end_to_end::SimulatorProcess::Track> tracks = proTools.tracks(8);
    ASSERT_THAT(tracks, SizeIs(8));
    for (std::size_t i = 0; i < all.size(); ++i) {
        EXPECT_THAT(all[i].name, StartsWith(std::to_string(i + 1) + " " + tracks[i].name.substr(0, 1)));
        ASSERT_TRUE(all[i].value.has_value());
        EXPECT_NEAR(*all[i].value, tracks[i].fader * 100, 1);
        EXPECT_TRUE(all[i].focusable);
    }
    EXPECT_EQ(all[2].description, "selected");
    proTools.end();
}

TEST_F(LumbrineForAScreenReader, IsToldOnceOfWhoComesAndGoes) {
    const auto hears = [&](const std::string& what) {
        return bus.waitUntil(
            [&] { return !reader.announcements().empty() && reader.announcements().back().starts_with(what); });
    };
    {
        end_to_end::SimulatorProcess proTools({"--tracks", "8", "--no-scripting"});
        EXPECT_TRUE(hears("Pro Tools (HUI): Connected · ping ")) << lumbrine->output();
        end_to_end::ClientSocket(port).send(Bytes{0x01, 0x00});
        EXPECT_TRUE(hears("iPhone / iPad: 127.0.0.1"));
        EXPECT_TRUE(reads("Pro Tools (HUI): Connected · ping 2")); // more pings are no news
        proTools.end();
    }
    EXPECT_TRUE(hears("Pro Tools (HUI): Waiting"));
    std::vector<std::string> all = reader.announcements();
    while (!all.empty() && all.front().ends_with("Waiting")) // how things stood when the window appeared
        all.erase(all.begin());
    EXPECT_THAT(all, ElementsAre(StartsWith("Pro Tools"), "iPhone / iPad: 127.0.0.1", "Pro Tools (HUI): Waiting"));
}

} // namespace
} // namespace lumbrine::desktop
