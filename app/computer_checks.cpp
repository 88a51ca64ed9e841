#include "app/computer_checks.h"

#include "app/check_case.h"

#include <algorithm>

namespace lumbrine {

using Link = LinkHealth::State;

namespace {

Check receiverCheck(const std::string& port, const Bilingual& text) {
    return {.id = "receiver",
            .state = CheckState::waiting,
            .title = text("Receiver", "レシーバー"),
            .sentence = text("No receiver of yours listens on UDP port " + port + ".",
                             "UDP ポート " + port + " で受信しているレシーバーはありません。"),
            .remedy = text("Start lumbrine, or lumbrine-headless.",
                           "lumbrine または lumbrine-headless を起動してください。")};
}

Check freePortCheck(const ComputerFacts& facts, const std::string& port, const Bilingual& text) {
    Check check{.id = "port",
                .state = CheckState::fine,
                .title = text("Network port", "ネットワークポート"),
                .sentence = text("UDP port " + port + " is free.", "UDP ポート " + port + " は空いています。")};
    if (facts.portIsFree) return check;
    const std::string holder = facts.portHolder.value_or(text("another program", "別のプログラム"));
    check.state = CheckState::wrong;
    check.sentence = text("UDP port " + port + " is taken by " + holder + ".",
                          "UDP ポート " + port + " は " + holder + " が使用中です。");
    check.remedy = text("End that program, or choose another port with QV_PORT.",
                        "そのプログラムを終了するか、QV_PORT で別のポートを指定してください。");
    return check;
}

Check midiSystemCheck(bool isThere, const Bilingual& text) {
    Check check{.id = "midi",
                .state = CheckState::fine,
                .title = text("MIDI system", "MIDI システム"),
                .sentence = text("JACK or ALSA answers.", "JACK または ALSA が応答しています。")};
    if (isThere) return check;
    check.state = CheckState::wrong;
    check.sentence = text("Neither JACK nor ALSA answers: there can be no MIDI ports.",
                          "JACK も ALSA も応答しないため、MIDI ポートを作成できません。");
    check.remedy = text("Start a JACK server (or PipeWire's).", "JACK サーバー（または PipeWire）を起動してください。");
    return check;
}

Check daemonCheck(bool answers, const Case& c) {
    if (!answers) return announcementCheck(c);
    return {.id = "announcement",
            .state = CheckState::fine,
            .title = c.text("Announcement", "広告（Bonjour）"),
            .sentence = c.text("avahi-daemon answers.", "avahi-daemon が応答しています。")};
}

} // namespace

std::vector<Check> computerChecks(const ComputerFacts& facts, const Bilingual& text) {
    PublishedState published;
    published.localIP = facts.address;
    published.health.port = facts.port;
    published.health.announcement.state = Link::down;
    const Case c{.published = published, .health = published.health, .onMac = false, .text = text};
    return {receiverCheck(c.port(), text), freePortCheck(facts, c.port(), text), addressCheck(c),
            daemonCheck(facts.announces, c), midiSystemCheck(facts.hasMIDI, text)};
}

Check gatewayCheck(const GatewayFacts& facts, const Bilingual& text) {
    const std::string port = std::to_string(facts.port);
    Check check{.id = "browsers",
                .state = CheckState::unknown,
                .title = text("Browsers", "ブラウザ"),
                .sentence = text("lumbrine-web does not run: phones need the app.",
                                 "lumbrine-web が起動していないため、スマートフォンにはアプリが必要です。"),
                .remedy = text("To use a browser, start lumbrine-web and open the address that it shows.",
                               "ブラウザを使うには lumbrine-web を起動し、表示されるアドレスを開いてください。")};
    if (!facts.isTaken) return check;
    if (facts.holder && !facts.holder->starts_with("lumbrine-web ")) {
        check.state = CheckState::wrong;
        check.sentence = text("TCP port " + port + " of lumbrine-web is taken by " + *facts.holder + ".",
                              "lumbrine-web の TCP ポート " + port + " は " + *facts.holder + " が使用中です。");
        check.remedy = text("End that program, or choose another port with QV_WEB_PORT.",
                            "そのプログラムを終了するか、QV_WEB_PORT で別のポートを指定してください。");
        return check;
    }
    check.state = CheckState::fine;
    check.sentence = text("lumbrine-web serves browsers on TCP port " + port + ".",
                          "lumbrine-web が TCP ポート " + port + " でブラウザからの接続を受け付けています。");
    check.remedy.clear();
    return check;
}

Check firewallCheck(const std::string& firewall, std::uint16_t port, const Bilingual& text) {
    const std::string number = std::to_string(port);
    const std::string commands = "sudo " + firewall + " allow " + number + "/udp; sudo " + firewall + " allow 5353/udp";
    return {.id = "firewall",
            .state = CheckState::unknown,
            .title = text("Firewall", "ファイアウォール"),
            .sentence = text(firewall + " is switched on; what it lets in is not known.",
                             firewall + " が有効です（許可の設定は確認できません）。"),
            .remedy = text("If phones do not find this computer or do not connect: " + commands,
                           "スマートフォンから見つからない、または接続できない場合: " + commands)};
}

Check silentReceiver(std::uint16_t port, const Bilingual& text) {
    return {.id = "receiver",
            .state = CheckState::wrong,
            .title = text("Receiver", "レシーバー"),
            .sentence = text("The receiver on UDP port " + std::to_string(port) + " runs, and does not answer.",
                             "UDP ポート " + std::to_string(port) + " のレシーバーが応答しません。"),
            .remedy = text("Start it again.", "起動し直してください。")};
}

std::vector<Check> networkChecks(const NetworkFacts& facts, const Bilingual& text) {
    std::vector<Check> checks;
    const bool isFound = std::ranges::find(facts.found, facts.announcedAs, &FoundService::name) != facts.found.end();
    if (!facts.announcedAs.empty() && !isFound)
        checks.push_back(
            {.id = "echo",
             .state = CheckState::wrong,
             .title = text("Found again", "広告の確認"),
             .sentence = text("The announcement is made, and this computer does not find it.",
                              "広告していますが、このコンピュータ自身からも見つかりません。"),
             .remedy = text("Let UDP port 5353 (multicast DNS) through the firewall.",
                            "ファイアウォールで UDP ポート 5353（マルチキャスト DNS）を許可してください。")});
    for (const FoundService& other : facts.found) {
        if (other.name == facts.announcedAs) continue;
        const std::string place = other.host + ":" + std::to_string(other.port);
        checks.push_back(
            {.id = "neighbour",
             .state = CheckState::waiting,
             .title = text("Another receiver", "別のレシーバー"),
             .sentence = text("“" + other.name + "” is on this network, too (" + place + ").",
                              "「" + other.name + "」も同じネットワークにあります（" + place + "）。"),
             .remedy = text("If a phone shows the wrong session: choose the other receiver in the app.",
                            "スマートフォンに別のセッションが表示される場合は、アプリでもう一方のレシーバーを"
                            "選んでください。")});
    }
    return checks;
}

} // namespace lumbrine
