#include "app/receiver_screen.h"

#include "app/diagnosis.h"

#include <algorithm>
#include <cmath>
#include <ranges>

namespace lumbrine {

namespace {

// The status icon is pale while Pro Tools is not connected.
constexpr double linkedOpacity = 1.0;
constexpr double unlinkedOpacity = 0.45;

std::string waiting(const Bilingual& text) {
    return text("Waiting", "待機中");
}

// Splits "a **b** c" into three runs, of which the second is bold. A text must not begin in bold.
std::vector<TextRun> runsOf(const std::string& marked) {
    std::vector<TextRun> runs;
    bool bold = false;
    for (const auto part : std::views::split(marked, std::string_view("**"))) {
        runs.push_back({std::string(part.begin(), part.end()), bold});
        bold = !bold;
    }
    return runs;
}

ScreenNotice notConnectedNotice(const PublishedState& published, const Bilingual& text) {
    return {.shown = !published.huiConnected,
            .symbol = Symbol::warning,
            .text = runsOf(text("Not connected to Pro Tools. The \"Reconnect to PT\" button can restore the connection "
                                "automatically (Accessibility permission required on first use). Manually, opening "
                                "**Setup ▸ Peripherals** in PT and closing it with OK also restores it.",
                                "Pro Tools と繋がっていません。「PT に再接続」ボタンで自動復旧できます"
                                "（初回はアクセシビリティ許可が必要）。手動の場合は PT の "
                                "**設定 ▸ ペリフェラル** を開いて OK で閉じるだけでも復帰します。"))};
}

std::string reconnectTitle(const Bilingual& text) {
    return text("Reconnect to PT", "PT に再接続");
}

ScreenButton reconnectButton(const Bilingual& text) {
    return {.symbol = Symbol::reconnect,
            .title = reconnectTitle(text),
            .help = text("Automatically opens and closes Pro Tools' Peripherals dialog so PT re-grabs the MIDI ports "
                         "(no settings are changed; Accessibility permission required on first use)",
                         "PT のペリフェラル画面を自動で開閉し、MIDI ポートを掴み直させます"
                         "（設定は変更しません。初回はアクセシビリティ許可が必要）"),
            .action = ScreenAction::reconnect};
}

std::array<ScreenButton, 4> moveButtons(const Bilingual& text) {
    return {{{.symbol = Symbol::bankBack,
              .title = {},
              .help = text("Bank ← (back 8 channels)", "バンク ←（8ch 戻る）"),
              .action = ScreenAction::bankBack},
             {.symbol = Symbol::channelBack,
              .title = {},
              .help = text("Channel ← (back 1 channel)", "ch ←（1ch 戻る）"),
              .action = ScreenAction::channelBack},
             {.symbol = Symbol::channelForward,
              .title = {},
              .help = text("Channel → (forward 1 channel)", "ch →（1ch 進む）"),
              .action = ScreenAction::channelForward},
             {.symbol = Symbol::bankForward,
              .title = {},
              .help = text("Bank → (forward 8 channels)", "バンク →（8ch 進む）"),
              .action = ScreenAction::bankForward}}};
}

void describe(StripView& view, std::size_t strip, const Bilingual& text) {
    view.spokenName = std::to_string(strip + 1);
    if (!view.shownName().empty()) view.spokenName += " " + view.shownName();
    const std::string comma = text(", ", "、");
    const auto light = [&](bool on, const std::string& words) {
        if (on) view.spokenLights += (view.spokenLights.empty() ? "" : comma) + words;
    };
    light(view.mute, text("muted", "ミュート中"));
    light(view.impliedMute, text("muted by a solo", "他トラックのソロによりミュート中"));
    light(view.solo, text("soloed", "ソロ中"));
    light(view.select, text("selected", "選択中"));
    view.spokenValue = std::to_string(std::lround(view.percent())) + " %";
    if (!view.spokenLights.empty()) view.spokenValue += comma + view.spokenLights;
    view.spoken = view.spokenName + comma + view.spokenValue;
}

StripView stripView(const PublishedState& published, std::size_t strip, const Bilingual& text, TimePoint now) {
    const StripState& shown = published.strips[strip];
    const bool blinks = shown.mute.isBlinking(now);
    StripView view{.name = shown.name,
                   .fullName = {},
                   .color = std::nullopt,
                   .fader = std::clamp(shown.fader, 0.0, 1.0),
                   .mute = shown.mute.rawOn && !blinks,
                   .impliedMute = blinks,
                   .solo = shown.solo,
                   .select = shown.select,
                   .spoken = {},
                   .spokenName = {},
                   .spokenValue = {},
                   .spokenLights = {}};
    if (const auto index = published.trackOn(strip)) {
        const Track& track = published.session.tracks[*index];
        view.fullName = track.name.value_or("");
        view.color = track.color;
    }
    describe(view, strip, text);
    return view;
}

std::string positionOf(const PublishedState& published, const Bilingual& text) {
    const auto first = published.trackOn(0);
    if (!first) return {};
    const std::size_t count = published.session.size();
    const std::size_t last = std::min(*first + static_cast<std::size_t>(published.winW), count);
    const std::string range = std::to_string(*first + 1) + "-" + std::to_string(last);
    const std::string all = std::to_string(count);
    return text("Tracks " + range + " of " + all, "トラック " + range + "（全 " + all + "）");
}

std::vector<StripView> stripViews(const PublishedState& published, const Bilingual& text, TimePoint now) {
    const auto shownStrips = static_cast<std::size_t>(published.winW);
    std::vector<StripView> views;
    views.reserve(shownStrips);
    for (std::size_t strip = 0; strip < shownStrips; ++strip)
        views.push_back(stripView(published, strip, text, now));
    return views;
}

} // namespace

double StripView::percent() const {
    return std::round(fader * 100);
}

// The names of Apple's SF Symbols, for the Mac application. The Qt window draws its own icons.
std::string_view symbolName(Symbol symbol) {
    switch (symbol) {
    case Symbol::sliders:
        return "slider.vertical.3";
    case Symbol::warning:
        return "exclamationmark.triangle.fill";
    case Symbol::reconnect:
        return "arrow.triangle.2.circlepath";
    case Symbol::network:
        return "wifi";
    case Symbol::bankBack:
        return "chevron.left.2";
    case Symbol::channelBack:
        return "chevron.left";
    case Symbol::channelForward:
        return "chevron.right";
    case Symbol::bankForward:
        return "chevron.right.2";
    case Symbol::about:
        return "info.circle";
    case Symbol::code:
        return "qrcode";
    case Symbol::list:
        return "list.bullet";
    case Symbol::play:
        break;
    }
    return "play.circle.fill";
}

ReceiverView receiverView(const PublishedState& published, const Bilingual& text, TimePoint now) {
    const std::string pings = std::to_string(published.pingCount);
    return {.windowTitle = "Lumbrine — Receiver",
            .heading = "Lumbrine — Receiver",
            .proTools = {.ok = published.huiConnected,
                         .title = "Pro Tools (HUI)",
                         .detail = published.huiConnected ? text("Connected · ping ", "接続中 · ping ") + pings
                                                          : waiting(text)},
            .client = {.ok = published.iosConnected,
                       .title = "iPhone / iPad",
                       .detail = published.iosClientDesc.empty() ? waiting(text)
                                                                 : withPlainAddresses(published.iosClientDesc)},
            .notice = notConnectedNotice(published, text),
            .reconnect = reconnectButton(text),
            .address = {.symbol = Symbol::network,
                        .title = text("This Mac's address:", "この Mac の接続先:"),
                        .address = published.localIP},
            .connectPhone = {.symbol = Symbol::code,
                             .title = {},
                             .help = text("Connect a phone: code and addresses",
                                          "スマートフォンを接続（QR コードとアドレス）"),
                             .action = ScreenAction::connectPhone},
            .moves = moveButtons(text),
            .test = {.symbol = Symbol::play,
                     .title = text("Test: sweep track 1", "テスト: トラック1をスイープ"),
                     .help = {},
                     .action = ScreenAction::testSweep},
            .session = {.symbol = Symbol::list,
                        .title = {},
                        .help = text("All tracks of the session", "セッションの全トラック"),
                        .action = ScreenAction::session},
            .about = {.symbol = Symbol::about,
                      .title = {},
                      .help = text("About Lumbrine", "Lumbrine について"),
                      .action = ScreenAction::about},
            .position = positionOf(published, text),
            .stripsName = text("Channel strips", "チャンネルストリップ"),
            .strips = stripViews(published, text, now),
            .logHeading = text("Activity", "アクティビティ"),
            .onlyProblems = {.title = text("Warnings and failures only", "警告とエラーのみ"),
                             .action = ScreenAction::onlyProblems,
                             .on = false}};
}

StatusMenu statusMenu(const PublishedState& published, bool loginOn, const Bilingual& text) {
    using Kind = MenuItem::Kind;
    const std::string ping = std::to_string(published.pingCount);
    const std::string proTools =
        "Pro Tools: " +
        (published.huiConnected ? text("Connected (ping ", "接続中 (ping ") + ping + ")" : waiting(text));
    const std::string client =
        "iPhone / iPad: " + (published.iosConnected ? withPlainAddresses(published.iosClientDesc) : waiting(text));
    return {.symbol = Symbol::sliders,
            .opacity = published.huiConnected ? linkedOpacity : unlinkedOpacity,
            .spoken = "Lumbrine — " + proTools,
            .items = {{.kind = Kind::status, .title = proTools},
                      {.kind = Kind::status, .title = client},
                      {.kind = Kind::divider},
                      {.kind = Kind::command,
                       .title = text("Show Window", "ウィンドウを表示"),
                       .action = ScreenAction::showWindow},
                      {.kind = Kind::command,
                       .title = reconnectTitle(text),
                       .action = ScreenAction::reconnect,
                       .enabled = !published.huiConnected},
                      {.kind = Kind::toggle,
                       .title = text("Launch at Login", "ログイン時に起動"),
                       .action = ScreenAction::launchAtLogin,
                       .on = loginOn},
                      {.kind = Kind::divider},
                      {.kind = Kind::command, .title = text("Quit", "終了"), .action = ScreenAction::quit}}};
}

} // namespace lumbrine
