#include "app/check_case.h"

namespace lumbrine {

using Link = LinkHealth::State;

Check midiCheck(const Case& c) {
    Check check{.id = "midi",
                .state = CheckState::fine,
                .title = c.text("MIDI ports", "MIDI ポート"),
                .sentence = c.text("The ports “Lumbrine” and “Lumbrine B” are there.",
                                   "ポート「Lumbrine」「Lumbrine B」を作成済みです。")};
    if (c.health.midi.state == Link::down) {
        const std::string detail = c.onMac ? c.health.midi.detail : ""; // it names a function of the Mac's
        const std::string why = detail.empty() ? "" : c.text(" (" + detail + ")", "（" + detail + "）");
        check.state = CheckState::wrong;
        check.sentence = c.text("The MIDI ports are missing" + why + ": Pro Tools cannot be reached.",
                                "MIDI ポートがありません" + why + "。Pro Tools と通信できません。");
        check.remedy =
            c.onMac ? c.text("Quit Lumbrine and start it again; if that does not help, restart the Mac.",
                             "Lumbrine を終了して起動し直してください。直らない場合は Mac を再起動してください。")
                    : c.text("Start a JACK server (or PipeWire's); Lumbrine then makes its ports by itself.",
                             "JACK サーバー（または PipeWire）を起動してください。ポートは自動で作成されます。");
    } else if (c.health.midi.state != Link::up) {
        check.state = CheckState::waiting;
        check.sentence = c.text("The MIDI system has not answered yet.", "MIDI システムの応答を待っています。");
    }
    return check;
}

// Which program it is, MIDI systems do not say; whether it is Pro Tools, its pings do.
Check connectionCheck(const Case& c) {
    const std::optional<bool> a = c.health.surfaceAIsTaken, b = c.health.surfaceBIsTaken;
    Check check{.id = "connections",
                .state = CheckState::fine,
                .title = c.text("MIDI connections", "MIDI 接続"),
                .sentence = {}};
    if (c.health.midi.state != Link::up || !a || !b) {
        check.state = CheckState::unknown;
        check.sentence = c.text("The MIDI system does not tell who uses the ports.",
                                "MIDI システムからはポートの使用状況を確認できません。");
    } else if (!*a) {
        check.state = CheckState::waiting;
        check.sentence = c.text("No program is connected to both ports “Lumbrine”.",
                                "入出力とも「Lumbrine」に接続しているプログラムはありません。");
    } else {
        check.sentence = *b ? c.text("A program is connected to “Lumbrine” and “Lumbrine B”.",
                                     "「Lumbrine」と「Lumbrine B」にプログラムが接続しています。")
                            : c.text("A program is connected to “Lumbrine”, none to “Lumbrine B”.",
                                     "「Lumbrine」にプログラムが接続しています（「Lumbrine B」は未接続）。");
    }
    return check;
}

namespace {

std::string recipe(const Case& c, const std::string& port) {
    return c.text("In Pro Tools open Setup ▸ Peripherals ▸ MIDI Controllers, set Type = HUI, Receive From = " + port +
                      ", Send To = " + port + ", # Ch's = 8, and close with OK.",
                  "Pro Tools の 設定 ▸ ペリフェラル ▸ MIDI コントローラー で Type = HUI、Receive From = " + port +
                      "、Send To = " + port + "、# Ch's = 8 に設定し、OK で閉じてください。");
}

} // namespace

Check surfaceCheck(const Case& c, const SurfaceCase& surface) {
    Check check{.id = surface.id,
                .state = CheckState::fine,
                .title =
                    c.text("Pro Tools, strips " + surface.strips, "Pro Tools（ストリップ " + surface.strips + "）"),
                .sentence = c.text("Pro Tools talks to “" + surface.port + "”.",
                                   "Pro Tools が「" + surface.port + "」と通信しています。")};
    if (surface.heardNow) return check;
    if (c.health.midi.state != Link::up) {
        check.state = CheckState::unknown;
        check.sentence = c.text("Not known without MIDI ports.", "MIDI ポートがないため確認できません。");
    } else if (surface.heardBefore) {
        check.state = CheckState::wrong;
        check.sentence = c.text("Pro Tools no longer talks to “" + surface.port + "”.",
                                "Pro Tools が「" + surface.port + "」と通信しなくなりました。");
        check.remedy =
            c.text("If Pro Tools runs: press “Reconnect to PT”, or open Setup ▸ Peripherals there and close "
                   "it with OK.",
                   "Pro Tools が起動している場合は「PT に再接続」を押すか、Pro Tools で 設定 ▸ ペリフェラル を"
                   "開いて OK で閉じてください。");
    } else {
        check.state = CheckState::waiting;
        check.sentence = c.text("Pro Tools has not talked to “" + surface.port + "” yet.",
                                "Pro Tools はまだ「" + surface.port + "」と通信していません。");
        check.remedy = recipe(c, surface.port);
    }
    return check;
}

Check faderCheck(const Case& c) {
    Check check{.id = "faders",
                .state = CheckState::fine,
                .title = c.text("Faders", "フェーダー"),
                .sentence = c.text("Pro Tools' faders follow the phone.",
                                   "Pro Tools のフェーダーがスマートフォンの操作に追従しています。")};
    if (!c.published.huiConnected) {
        check.state = CheckState::unknown;
        check.sentence = c.text("Not known without Pro Tools.", "Pro Tools に接続していないため確認できません。");
    } else if (!c.health.fadersFollow) {
        check.state = CheckState::unknown;
        check.sentence =
            c.text("No phone has moved a fader yet.", "スマートフォンからフェーダーはまだ操作されていません。");
    } else if (!*c.health.fadersFollow) {
        check.state = CheckState::wrong;
        check.sentence = c.text("Pro Tools' fader did not follow the last move.",
                                "直前の操作に Pro Tools のフェーダーが追従しませんでした。");
        check.remedy = c.text("In Pro Tools' Setup ▸ Peripherals ▸ MIDI Controllers, Receive From and Send To must be "
                              "the same port: “Lumbrine” in one row, “Lumbrine B” in the other.",
                              "Pro Tools の 設定 ▸ ペリフェラル ▸ MIDI コントローラー で、Receive From と Send To を"
                              "同じポートにしてください（1 行は「Lumbrine」、もう 1 行は「Lumbrine B」）。");
    }
    return check;
}

Check mapCheck(const Case& c) {
    const std::size_t tracks = c.published.session.size();
    const std::string count = std::to_string(tracks);
    Check check{.id = "map",
                .state = CheckState::fine,
                .title = c.text("Tracks", "トラック"),
                .sentence = c.text(count + (tracks == 1 ? " track is" : " tracks are") +
                                       " mapped, without those that Pro Tools hides.",
                                   count + " トラックを把握しています（非表示のトラックを除く）。")};
    if (!c.published.huiConnected) {
        check.state = CheckState::unknown;
        check.sentence = c.text("Not known without Pro Tools.", "Pro Tools に接続していないため確認できません。");
    } else if (tracks == 0) {
        check.state = CheckState::waiting;
        check.sentence =
            c.text("The session has not been scanned yet.", "セッションのトラックはまだ計測されていません。");
        check.remedy =
            c.text("Open a session in Pro Tools and connect a phone: the scan begins by itself.",
                   "Pro Tools でセッションを開き、スマートフォンを接続してください。計測は自動で始まります。");
    } else if (c.published.bankOffset < 0) {
        check.state = CheckState::waiting;
        check.sentence = c.text("It is not known which tracks the surfaces show.",
                                "サーフェスが表示しているトラックを特定できていません。");
        check.remedy = c.text("It is found again as soon as the banks move.", "バンクを移動すると特定されます。");
    }
    return check;
}

Check scriptingCheck(const Case& c) {
    Check check{.id = "scripting",
                .state = CheckState::unknown,
                .title = c.text("Scripting service", "公式 API"),
                .sentence = c.text("Pro Tools has not been asked for full names and colours yet.",
                                   "Pro Tools の公式 API にはまだ問い合わせていません。")};
    if (c.health.scripting.state == Link::up) {
        check.state = CheckState::fine;
        check.sentence =
            c.text("Pro Tools tells full names and colours.", "Pro Tools からトラック名と色を取得しています。");
    } else if (c.health.scripting.state == Link::down) {
        check.state = c.published.huiConnected ? CheckState::waiting : CheckState::unknown;
        check.sentence = c.text("Full names and colours are missing: " + c.health.scripting.detail + ".",
                                "トラック名と色を取得できません（" + c.health.scripting.detail + "）。");
        check.remedy =
            c.text("Faders work without them. The service is there while a session is open in a Pro Tools "
                   "that offers it.",
                   "フェーダーはそのまま使えます。公式 API は、対応する Pro Tools でセッションを開いている間に"
                   "利用できます。");
    }
    return check;
}

Check screenCheck(const Case& c) {
    Check check{.id = "screen",
                .state = CheckState::unknown,
                .title = c.text("Screen permission", "画面読み取りの許可"),
                .sentence = c.text("Not needed so far.", "まだ必要になっていません。")};
    const LinkHealth& screen = c.health.screen;
    if (screen.state == Link::up) {
        check.state = CheckState::fine;
        check.sentence = c.text("Lumbrine may read Pro Tools' windows.", "Pro Tools の画面を読み取れます。");
    } else if (screen.state == Link::down && screen.detail == "stale") {
        check.state = CheckState::wrong;
        check.sentence = c.text("The system refuses it although Lumbrine is allowed to read Pro Tools' windows.",
                                "許可されているのに、システムが Pro Tools の画面の読み取りを拒否しています。");
        check.remedy =
            c.text("In System Settings ▸ Privacy & Security ▸ Accessibility remove Lumbrine with “−” and "
                   "add it again.",
                   "システム設定 ▸ プライバシーとセキュリティ ▸ アクセシビリティ で Lumbrine を「−」で削除し、"
                   "もう一度追加してください。");
    } else if (screen.state == Link::down) {
        check.state = CheckState::waiting;
        check.sentence = c.text("Lumbrine is not allowed to read Pro Tools' windows.",
                                "Pro Tools の画面の読み取りが許可されていません。");
        check.remedy = c.text("Allow it in System Settings ▸ Privacy & Security ▸ Accessibility, then press “Reconnect "
                              "to PT” again.",
                              "システム設定 ▸ プライバシーとセキュリティ ▸ アクセシビリティ で許可してから、もう一度"
                              "「PT に再接続」を押してください。");
    }
    return check;
}

} // namespace lumbrine
