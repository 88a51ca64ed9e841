#include "tools/demo_programme.h"

#include "remote/command_builder.h"
#include "remote/message_line.h"

#include <algorithm>
#include <utility>

namespace lumbrine {

namespace {

using remote::AutoMode;
using remote::LinkState;
using remote::StripPicture;

constexpr std::size_t phoneA = DemoStage::phoneA;
constexpr std::size_t phoneB = DemoStage::phoneB;
constexpr Duration patienceWithBanks = seconds(15);

remote::Member memberOf(int track) {
    return static_cast<remote::Member>(track - 1);
}

std::string onOff(bool on, const Bilingual& text) {
    return on ? text("on", "オン") : text("off", "オフ");
}

std::string lightText(remote::Light light, const Bilingual& text) {
    if (light == remote::Light::blinking) return text("blinking", "点滅");
    return onOff(light == remote::Light::on, text);
}

std::string namesShown(const remote::SessionPicture& picture) {
    std::string names;
    for (const StripPicture& strip : picture.strips)
        names += " " + strip.name;
    return names;
}

// While the receiver reads an automation mode from a display, the names of the strips are hidden and the bank position
// is unknown. A seek in that moment would be ignored, so the step waits.
template <typename Function>
void whenPositionIsKnown(DemoStage& stage, const Function& act) {
    if (stage.picture(phoneA).bankOffset) return act();
    stage.after(seconds(0.02), [&stage, act] { whenPositionIsKnown(stage, act); });
}

// Repeats the seek until it works: the position may have become unknown just before it, and then it is ignored.
void askForTrack(DemoStage& stage, int track, const std::shared_ptr<const bool>& arrived) {
    if (*arrived) return;
    stage.phone(phoneA).send(remote::seekBankCommand(memberOf(track)));
    stage.after(seconds(1.5), [&stage, track, arrived] { askForTrack(stage, track, arrived); });
}

class Programme {
public:
    explicit Programme(DemoStage& stage) : stage(stage), text(stage.given.text) {}

    std::vector<DemoStep> take() { return std::move(steps); }

    void hello(std::size_t phone, LinkState state, const std::string& says, const std::string& hears) {
        steps.push_back({phone, says, [&stage = stage, phone] { stage.connect(phone); }, stateIs(phone, state, hears)});
    }

    void scan();
    void fader(std::size_t phone, int strip, double value);
    void press(int strip, const std::string& what, Bytes (*command)(Strip), int port,
               std::function<std::string(const StripPicture&)> shown);
    void vpot(int strip, int clicks);
    void automation(int strip, remote::AutoModeKey key, AutoMode mode, SimulatedTrack::Automation inSession);
    void seek(int track);
    void groupFaders(const std::vector<int>& tracks, double value);
    void handOver();

private:
    using Answer = std::function<std::optional<std::string>()>;

    Answer stateIs(std::size_t phone, LinkState state, const std::string& words) {
        return [&stage = stage, phone, state, words]() -> std::optional<std::string> {
            if (stage.phone(phone).state() != state) return std::nullopt;
            return words;
        };
    }

    DemoStage& stage;
    const Bilingual text;
    std::vector<DemoStep> steps;
};

void Programme::scan() {
    steps.push_back(
        {phoneA, text("waits until the receiver knows the session", "レシーバーがセッションを把握するまで待つ"), [] {},
         [&stage = stage, text = text]() -> std::optional<std::string> {
             const remote::SessionPicture& picture = stage.picture(phoneA);
             const bool allNamed =
                 std::ranges::none_of(picture.strips, [](const auto& strip) { return strip.name.empty(); });
             const bool known = picture.shownStrips == stripCount && picture.bankOffset && allNamed;
             if (!known || !stage.receiverIsReady()) return std::nullopt;
             return std::to_string(picture.trackCount) +
                    text(" tracks, of which the 16 strips show:", " トラック、16 本のストリップの表示:") +
                    namesShown(picture);
         },
         false, seconds(20)});
}

void Programme::fader(std::size_t phone, int strip, double value) {
    const std::string number = std::to_string(strip), aim = fixed(value, 2);
    steps.push_back({phone,
                     text("touches fader " + number + ", moves it to " + aim + ", lets go",
                          "フェーダー " + number + " にタッチし、" + aim + " まで動かして離す"),
                     [&stage = stage, phone, strip, value] { stage.sweep(phone, strip, value); },
                     [&stage = stage, text = text, phone, strip, value]() -> std::optional<std::string> {
                         const FaderValue wanted = FaderValue::ofUnit(value);
                         const SimulatorSnapshot::Strip host = stage.hostStrip(strip);
                         const bool arrived = host.fader == wanted && !host.touched;
                         if (!arrived || stage.shownTo(phone, strip).fader != wanted) return std::nullopt;
                         const std::string track = stage.trackOn(strip), at = fixed(wanted.unit(), 3);
                         stage.tellOfProTools(text("fader of " + track + " at " + at, track + "のフェーダー: " + at));
                         return text("fader ", "フェーダー ") + std::to_string(strip) + text(" ", ": ") + at;
                     }});
}

void Programme::press(int strip, const std::string& what, Bytes (*command)(Strip), int port,
                      std::function<std::string(const StripPicture&)> shown) {
    const auto before = std::make_shared<std::string>(); // the state of the light when the step begins
    const auto now = [&stage = stage, strip, shown = std::move(shown)] { return shown(stage.shownTo(phoneA, strip)); };
    const std::string key = what + " " + std::to_string(strip);
    steps.push_back({phoneA, text("presses " + key, key + " を押す"),
                     [&stage = stage, before, now, command, strip] {
                         *before = now();
                         stage.phone(phoneA).send(command(stripNumber(strip)));
                     },
                     [&stage = stage, text = text, before, now, strip, what, port]() -> std::optional<std::string> {
                         if (now() == *before) return std::nullopt;
                         const bool lit = (stage.hostStrip(strip).leds >> port & 1) != 0;
                         const std::string track = stage.trackOn(strip), state = onOff(lit, text);
                         stage.tellOfProTools(
                             text(what + " of " + track + " is " + state, track + "の" + what + ": " + state));
                         return text("strip ", "ストリップ ") + std::to_string(strip) + ": " + now();
                     }});
}

void Programme::vpot(int strip, int clicks) {
    const auto before = std::make_shared<int>();
    const auto position = [&stage = stage, strip] {
        return static_cast<int>(stage.shownTo(phoneA, strip).ring(remote::PanSide::left).position);
    };
    const std::string number = std::to_string(strip), turn = std::to_string(clicks);
    steps.push_back(
        {phoneA,
         text("turns V-Pot " + number + " by " + turn + " clicks", "V-Pot " + number + " を " + turn + " クリック回す"),
         [&stage = stage, before, position, strip, clicks] {
             *before = position();
             stage.phone(phoneA).send(remote::vpotDeltaCommand(stripNumber(strip), static_cast<std::int8_t>(clicks)));
         },
         [&stage = stage, text = text, before, position, strip]() -> std::optional<std::string> {
             if (position() == *before) return std::nullopt;
             stage.tellOfProTools(text("ring of ", "") + stage.trackOn(strip) + text(" at ", "のリング: ") +
                                  std::to_string(stage.hostStrip(strip).ring & 0x0F));
             return text("pan ", "パン ") + std::to_string(strip) + text(" from ", ": ") + std::to_string(*before) +
                    text(" to ", " → ") + std::to_string(position());
         }});
}

void Programme::automation(int strip, remote::AutoModeKey key, AutoMode mode, SimulatedTrack::Automation inSession) {
    const std::string name(remote::autoModeName(mode));
    const std::string number = std::to_string(strip);
    steps.push_back({phoneA,
                     text("sets the automation of strip " + number + " to " + name,
                          "ストリップ " + number + " のオートメーションを " + name + " にする"),
                     [&stage = stage, strip, key] {
                         stage.phone(phoneA).send(remote::setAutoModeCommand(stripNumber(strip), key));
                     },
                     [&stage = stage, text = text, strip, mode, inSession, name]() -> std::optional<std::string> {
                         const bool set = stage.track(stage.firstShownTrack() + strip - 1).automation == inSession;
                         if (!set || stage.shownTo(phoneA, strip).autoMode != mode) return std::nullopt;
                         const std::string track = stage.trackOn(strip);
                         stage.tellOfProTools(
                             text("automation of " + track + " is " + name, track + "のオートメーション: " + name));
                         return text("strip ", "ストリップ ") + std::to_string(strip) +
                                text(": automation ", ": オートメーション ") + name;
                     },
                     false});
}

// No message says that a seek has ended: the new position is sent before Pro Tools has moved, and the names after it.
// So the step compares them with what the simulated Pro Tools shows.
void Programme::seek(int track) {
    const auto arrived = std::make_shared<bool>(false);
    const std::string number = std::to_string(track);
    steps.push_back({phoneA, text("goes to track " + number, "トラック " + number + " へ移動する"),
                     [&stage = stage, track, arrived] {
                         whenPositionIsKnown(stage, [&stage, track, arrived] { askForTrack(stage, track, arrived); });
                     },
                     [&stage = stage, text = text, track, arrived]() -> std::optional<std::string> {
                         const remote::SessionPicture& picture = stage.picture(phoneA);
                         const std::string display = stage.hostStrip(stripCount).display;
                         *arrived = stage.firstShownTrack() == track && picture.bankOffset == track - 1 &&
                                    display.starts_with(picture.strips.back().name);
                         if (!*arrived) return std::nullopt;
                         const std::string range = std::to_string(track) + "-" + std::to_string(track + stripCount - 1);
                         stage.tellOfProTools(
                             text("tracks " + range + " are on the surfaces", "サーフェスの表示: トラック " + range));
                         return text("the strips show:", "ストリップの表示:") + namesShown(picture);
                     },
                     false, patienceWithBanks});
}

// While the receiver walks over the session it sends rows of the tracks that it passes, but no message about a strip's
// fader. The first such message shows that the walk is over.
void Programme::groupFaders(const std::vector<int>& tracks, double value) {
    std::string numbers;
    std::vector<std::pair<remote::Member, FaderValue>> entries;
    for (const int track : tracks) {
        numbers += (numbers.empty() ? "" : ", ") + std::to_string(track);
        entries.emplace_back(memberOf(track), FaderValue::ofUnit(value));
    }
    const auto asked = std::make_shared<std::optional<int>>(); // fadersHeard when the command was sent
    const std::string aim = fixed(value, 2);
    steps.push_back(
        {phoneA,
         text("moves the faders of tracks " + numbers + ", which no strip shows, to " + aim,
              "ストリップに表示されていないトラック " + numbers + " のフェーダーを " + aim + " にする"),
         [&stage = stage, asked, command = remote::groupFadersCommand(entries)] {
             whenPositionIsKnown(stage, [&stage, asked, command] {
                 *asked = stage.fadersHeard;
                 stage.phone(phoneA).send(command);
             });
         },
         [&stage = stage, text = text, asked, tracks, value, numbers]() -> std::optional<std::string> {
             const auto isThere = [&stage, wanted = FaderValue::ofUnit(value)](int track) {
                 return stage.track(track).fader == wanted && stage.rowFader(track) == wanted;
             };
             const bool walked = *asked && stage.fadersHeard > **asked;
             if (!walked || !std::ranges::all_of(tracks, isThere)) return std::nullopt;
             const std::string at = fixed(value, 3), first = std::to_string(stage.firstShownTrack());
             for (const int track : tracks) {
                 const std::string name = stage.track(track).name;
                 stage.tellOfProTools(
                     text("fader of \"" + name + "\" at " + at, "「" + name + "」のフェーダー: " + at));
             }
             return text("rows of tracks " + numbers + ": fader " + at + "; the first strip shows track " + first,
                         "トラック " + numbers + " の行: フェーダー " + at + "、先頭のストリップはトラック " + first);
         },
         false, patienceWithBanks});
}

void Programme::handOver() {
    hello(phoneB, LinkState::busy, text("says hello while phone A is in control", "端末 A の操作中に接続を試みる"),
          text("busy: another device is in control", "拒否: 別の端末が操作中"));
    steps.push_back({phoneB, text("takes over", "操作を引き継ぐ"), [&stage = stage] { stage.phone(phoneB).takeOver(); },
                     stateIs(phoneB, LinkState::connected, text("in control now", "操作可能になった"))});
    steps.push_back({phoneA, text("presses mute 1, no longer in control", "操作を引き継がれた後にミュート 1 を押す"),
                     [&stage = stage] { stage.phone(phoneA).send(remote::mutePressCommand(stripNumber(1))); },
                     stateIs(phoneA, LinkState::takenOver,
                             text("busy: another device has taken over", "拒否: 別の端末が操作を引き継いだ"))});
}

} // namespace

std::vector<DemoStep> demoProgramme(DemoStage& stage) {
    Programme programme(stage);
    const Bilingual text = stage.given.text;
    const std::string mute = text("mute", "ミュート"), solo = text("solo", "ソロ");
    const std::string record = text("record", "録音待機"), select = text("select", "選択");
    const auto muted = [=](const StripPicture& strip) { return mute + " " + lightText(strip.lights.mute, text); };
    const auto soloed = [=](const StripPicture& strip) { return solo + " " + onOff(strip.lights.solo, text); };
    const auto recording = [=](const StripPicture& strip) {
        return record + " " + lightText(strip.lights.record, text);
    };
    const auto selected = [=](const StripPicture& strip) { return select + " " + onOff(strip.select, text); };
    programme.hello(phoneA, LinkState::connected,
                    text("says hello and asks for everything", "接続してすべての状態を要求する"),
                    text("in control", "操作可能"));
    programme.scan();
    programme.fader(phoneA, 3, 0.72);
    programme.fader(phoneA, 11, 0.35);
    programme.automation(4, remote::AutoModeKey::touch, 2, SimulatedTrack::Automation::touch);
    programme.press(2, mute, remote::mutePressCommand, 2, muted);
    programme.press(5, solo, remote::soloPressCommand, 3, soloed);
    programme.press(5, solo, remote::soloPressCommand, 3, soloed);
    programme.press(12, select, remote::selectPressCommand, 1, selected);
    programme.press(1, record, remote::recArmPressCommand, 7, recording);
    programme.vpot(2, 27);
    programme.seek(21);
    programme.fader(phoneA, 1, 0.6);
    programme.press(14, mute, remote::mutePressCommand, 2, muted);
    programme.seek(1);
    programme.groupFaders({25, 30, 36}, 0.25);
    programme.handOver();
    programme.fader(phoneB, 1, 0.5);
    return programme.take();
}

} // namespace lumbrine
