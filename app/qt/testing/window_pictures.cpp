// window_pictures FOLDER: takes pictures of the window in each state of its card, of the boxes and of the menu, in both
// languages, on a light and on a dark desktop, to be looked at. Nothing is measured here.
#include "app/qt/about_box.h"
#include "app/qt/connect_box.h"
#include "app/qt/receiver_window.h"
#include "app/qt/session_box.h"
#include "app/qt/status_icon.h"
#include "app/qt/testing/palettes.h"
#include "app/qt/texts.h"

#include <QApplication>
#include <QMenu>
#include <cstdio>

namespace lumbrine {
namespace {

using Link = LinkHealth::State;

PublishedState justStarted() {
    PublishedState state;
    state.localIP = "192.168.1.23";
    state.health.port = 52700;
    state.health.udp.state = Link::up;
    state.health.announcement = {.state = Link::up, .detail = "studio-mac"};
    state.health.midi.state = Link::up;
    return state;
}

PublishedState withProTools(int strips) {
    static const std::vector<std::string> names{"Kick In",    "Kick Out",  "Snare Top", "Snare Bottom",
                                                "Toms",       "Overheads", "Room",      "ベースギター",
                                                "Bass Amp",   "Gtr L",     "Gtr R",     "アコースティックギター",
                                                "Lead Vocal", "コーラス",  "Reverb",    "Delay"};
    PublishedState state = justStarted();
    state.huiConnected = true;
    state.health.surfaceAWasHeard = true;
    state.winW = strips;
    state.health.surfaceBWasHeard = strips == stripCount;
    state.pingCount = 340;
    state.bankOffset = 0;
    for (std::size_t i = 0; i < names.size(); ++i) {
        Track track;
        track.name = names[i];
        const auto shade = static_cast<std::uint32_t>(i * 14);
        track.color = RGBColor((220U - shade) << 16U | (60U + shade) << 8U | (90U + shade / 2));
        track.comment = i % 5 == 2 ? "EQ: 3 kHz −2 dB" : "";
        state.session.tracks.push_back(track);
        state.strips[i].name = names[i].substr(0, 3);
        state.strips[i].fader = 0.2 + 0.05 * static_cast<double>(i);
        state.strips[i].shownFader = state.strips[i].fader;
    }
    state.strips[2].mute.rawOn = true;
    state.strips[3].mute = {.rawOn = true, .blinkUntil = TimePoint::max()};
    state.strips[5].solo = state.strips[6].select = true;
    return state;
}

PublishedState complete() {
    PublishedState state = withProTools(stripCount);
    state.iosConnected = true;
    state.iosClientDesc = state.health.lastClient = "::ffff:192.168.1.7";
    return state;
}

// A state in which everything worked, and one thing does no longer.
template <typename Break>
PublishedState broken(Break breakIt) {
    PublishedState state = complete();
    breakIt(state);
    return state;
}

struct Scene {
    std::string name;
    PublishedState state;
    bool withCard = true;
    HostSystem system = HostSystem::linuxDesktop;
};

std::vector<Scene> scenes() {
    return {
        {"1-waiting", justStarted()},
        {"2-one-surface", withProTools(stripsPerSurface)},
        {"3-two-surfaces", withProTools(stripCount)},
        {"4-complete", complete(), false},
        {"5-no-midi", broken([](PublishedState& state) {
             state.huiConnected = false;
             state.health.midi = {.state = Link::down, .detail = "MIDIClientCreateWithBlock failed: -19"};
         })},
        {"6-port-taken", broken([](PublishedState& state) {
             state.health.udp = {.state = Link::down, .detail = "bind: Address already in use"};
             state.huiConnected = false;
             state.iosConnected = false;
             state.iosClientDesc = state.health.lastClient = {};
             state.health.surfaceAWasHeard = state.health.surfaceBWasHeard = false;
             state.winW = stripsPerSurface;
             state.session = {};
         })},
        {"7-pro-tools-gone", broken([](PublishedState& state) { state.huiConnected = false; })},
        {"8-second-surface-gone", broken([](PublishedState& state) { state.winW = stripsPerSurface; })},
        {"9-phone-gone", broken([](PublishedState& state) {
             state.iosConnected = false;
             state.iosClientDesc.clear();
         })},
        {"10-no-network", broken([](PublishedState& state) { state.localIP = "127.0.0.1"; })},
        {"11-not-announced", broken([](PublishedState& state) { state.health.announcement = {.state = Link::down}; })},
        {"12-mac-permission-stale",
         broken([](PublishedState& state) { state.health.screen = {.state = Link::down, .detail = "stale"}; }), true,
         HostSystem::mac},
    };
}

std::vector<LogRow> logRows(const Bilingual& text) {
    return {{1, "14:03:10", text("✓ UDP listening on :52700", "✓ UDP 待受 :52700")},
            {2, "14:03:10", text("✓ Bonjour advertising: studio-mac", "✓ Bonjour 広告: studio-mac")},
            {3, "14:03:59", "♥ ping #10 … #340"},
            {4, "14:04:02", text("⚠️ Pro Tools is not responding", "⚠️ Pro Tools が応答しません")},
            {5, "14:04:05", text("✗ MIDI failed: no JACK server", "✗ MIDI 失敗: no JACK server")}};
}

class Photographer {
public:
    Photographer(std::string folder, Bilingual language, std::string ending)
        : folder(std::move(folder)), text(language), ending(std::move(ending)) {}

    void takeAll() {
        for (const Scene& scene : scenes())
            takeWindow(scene);
        takeBoxes(complete());
        takeMenu(complete());
    }

private:
    void take(QWidget& widget, const std::string& name) {
        widget.show();
        QCoreApplication::processEvents();
        const std::string path = folder + "/window-" + name + "-" + ending + ".png";
        if (!widget.grab().save(shown(path))) std::fprintf(stderr, "cannot write %s\n", path.c_str());
    }

    void takeWindow(const Scene& scene) {
        ReceiverWindow window({.act = [](ScreenAction) {}, .appeared = [] {}, .closed = [] {}});
        const SetUpCard card = scene.withCard ? setUpCard(scene.state, scene.system, text) : SetUpCard();
        window.display(receiverView(scene.state, text, TimePoint()), card, logRows(text));
        take(window, scene.name);
    }

    void takeBoxes(const PublishedState& state) {
        AboutBox about(aboutText({.version = "0.1.0",
                                  .systemName = "Linux",
                                  .checks = diagnosis(state, HostSystem::linuxDesktop, text),
                                  .log = {},
                                  .recorded = true},
                                 text),
                       {}, nullptr);
        take(about, "about");
        ConnectBox phone(connectText(state, {state.localIP, "10.0.0.5"}, "http://192.168.1.23:52780/#key", text), {},
                         nullptr);
        take(phone, "connect");
        SessionBox session({.searched = [] {}, .chosen = [](std::size_t) {}}, nullptr);
        session.display(sessionPage(state, {}, text));
        take(session, "session");
    }

    void takeMenu(const PublishedState& state) {
        StatusIcon icon([](ScreenAction) {});
        icon.display(statusMenu(state, true, text));
        take(const_cast<QMenu&>(icon.menu()), "menu"); // the picture changes nothing in it
    }

    const std::string folder;
    const Bilingual text;
    const std::string ending;
};

} // namespace
} // namespace lumbrine

int main(int count, char** arguments) {
    if (count != 2) {
        std::fputs("Usage: window_pictures FOLDER\n", stderr);
        return 2;
    }
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {}); // of what offscreen lacks
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(count, arguments);
    for (const bool dark : {false, true}) {
        QApplication::setPalette(dark ? lumbrine::darkPalette() : lumbrine::lightPalette());
        for (const bool japanese : {false, true})
            lumbrine::Photographer(arguments[1], lumbrine::Bilingual(japanese),
                                   std::string(japanese ? "ja" : "en") + (dark ? "-dark" : "-light"))
                .takeAll();
    }
}
