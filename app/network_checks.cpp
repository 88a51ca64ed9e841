#include "app/check_case.h"

namespace lumbrine {

using Link = LinkHealth::State;

Check portCheck(const Case& c) {
    Check check{.id = "port",
                .state = CheckState::fine,
                .title = c.text("Network port", "ネットワークポート"),
                .sentence =
                    c.text("UDP port " + c.port() + " is open.", "UDP ポート " + c.port() + " で受信しています。")};
    if (c.health.udp.state == Link::down) {
        check.state = CheckState::wrong;
        check.sentence =
            c.text("UDP port " + c.port() + " could not be opened (" + c.health.udp.detail + "): no phone is heard.",
                   "UDP ポート " + c.port() + " を開けません（" + c.health.udp.detail +
                       "）。スマートフォンから受信できません。");
        check.remedy =
            c.text("End the program that has the port, perhaps another Lumbrine, then start Lumbrine again. "
                   "Or choose another port with QV_PORT.",
                   "このポートを使っているプログラム（別の Lumbrine など）を終了してから、Lumbrine を起動し直して"
                   "ください。QV_PORT で別のポートを指定することもできます。");
    } else if (c.health.udp.state != Link::up) {
        check.state = CheckState::waiting;
        check.sentence = c.text("The port is not open yet.", "ポートはまだ開いていません。");
    }
    return check;
}

Check addressCheck(const Case& c) {
    const std::string& address = c.published.localIP;
    if (address != "127.0.0.1")
        return {.id = "address",
                .state = CheckState::fine,
                .title = c.text("Address", "アドレス"),
                .sentence = c.text("A phone reaches this computer at " + address + ", port " + c.port() + ".",
                                   "スマートフォンからの接続先は " + address + "、ポート " + c.port() + " です。")};
    return {.id = "address",
            .state = CheckState::wrong,
            .title = c.text("Address", "アドレス"),
            .sentence =
                c.text("This computer is on no network.", "このコンピュータはネットワークに接続されていません。"),
            .remedy = c.text("Connect it to the network of the phone's Wi-Fi.",
                             "スマートフォンの Wi-Fi と同じネットワークに接続してください。")};
}

namespace {

std::string announcementRemedy(const Case& c) {
    if (c.onMac)
        return c.text(
            "Allow Lumbrine in System Settings ▸ Privacy & Security ▸ Local Network. Until then enter the "
            "address on the phone.",
            "システム設定 ▸ プライバシーとセキュリティ ▸ ローカルネットワーク で Lumbrine を許可してください。"
            "それまではスマートフォンでアドレスを入力してください。");
    return c.text("Start the service avahi-daemon. Until then enter the address on the phone.",
                  "avahi-daemon サービスを起動してください。それまではスマートフォンでアドレスを入力してください。");
}

} // namespace

Check announcementCheck(const Case& c) {
    Check check{.id = "announcement",
                .state = CheckState::waiting,
                .title = c.text("Announcement", "広告（Bonjour）"),
                .sentence = c.text("The network has not confirmed the announcement yet.",
                                   "広告できたかどうかは、まだ確認できていません。")};
    switch (c.health.announcement.state) {
    case Link::up:
        check.state = CheckState::fine;
        check.sentence = c.text("Phones find this computer as “" + c.health.announcement.detail + "”.",
                                "スマートフォンには「" + c.health.announcement.detail + "」と表示されます。");
        break;
    case Link::off:
        check.state = CheckState::fine;
        check.sentence = c.text("Switched off by QV_NO_BONJOUR: the phone needs the address.",
                                "QV_NO_BONJOUR によりオフです。スマートフォンでアドレスを入力してください。");
        break;
    case Link::down:
        check.state = CheckState::wrong;
        check.sentence = c.text("Nobody announces Lumbrine on the network: phones do not find it by themselves.",
                                "Bonjour で広告できていないため、スマートフォンからは自動で見つかりません。");
        check.remedy = announcementRemedy(c);
        break;
    case Link::waiting:
    case Link::unknown:
        break;
    }
    return check;
}

namespace {

// Empty when the client does not seal, or nothing was lost.
std::string lossSentence(const Case& c) {
    const auto& loss = c.health.loss;
    if (!c.published.iosConnected || !loss || loss->lost == 0) return {};
    const std::string lost = std::to_string(loss->lost);
    const std::string sent = std::to_string(loss->received + loss->lost);
    return c.text(" The network lost " + lost + " of its " + sent + " datagrams.",
                  "送信された " + sent + " 個のうち " + lost + " 個がネットワークで失われました。");
}

// Empty when there were none.
std::string strangersSentence(const Case& c) {
    const std::size_t count = c.health.strangers;
    if (count == 0) return {};
    const std::string number = std::to_string(count);
    return c.text(count == 1 ? " A client without a key was not let in."
                             : " " + number + " clients without a key were not let in.",
                  "鍵のないクライアント " + number + " 台を拒否しました。");
}

Check phonesState(const Case& c) {
    Check check{.id = "phone", .state = CheckState::fine, .title = "iPhone / iPad", .sentence = {}};
    const std::string client = withPlainAddresses(c.published.iosClientDesc);
    if (c.published.iosConnected) {
        check.sentence = client.empty() ? c.text("A phone is connected.", "スマートフォンが接続されています。")
                                        : c.text(client + " is connected.", client + " が接続されています。");
        return check;
    }
    check.state = CheckState::waiting;
    if (const std::string last = withPlainAddresses(c.health.lastClient); !last.empty()) {
        check.sentence = c.text(last + " was connected and is silent now.", last + " からの受信が途絶えています。");
        check.remedy = c.text("Bring the app on the phone to the front, and keep the phone in the same Wi-Fi.",
                              "スマートフォンでアプリを前面に表示し、同じ Wi-Fi に接続したままにしてください。");
    } else if (c.health.udp.state == Link::up) {
        check.sentence = c.text("No phone has been heard yet.", "スマートフォンからまだ受信していません。");
        check.remedy =
            c.text("Open the app on a phone in the same network. If it does not find this computer, enter "
                   "the address. A firewall has to let UDP ports " +
                       c.port() + " and 5353 in.",
                   "同じネットワークのスマートフォンでアプリを開いてください。見つからない場合はアドレスを入力して"
                   "ください。ファイアウォールでは UDP ポート " +
                       c.port() + " と 5353 の受信を許可する必要があります。");
        if (!c.onMac) // where there is no lumbrine-web yet
            check.remedy += c.text(" Any browser does as well: lumbrine-web shows its address.",
                                   "アプリの代わりにブラウザも使えます（アドレスは lumbrine-web が表示します）。");
    } else {
        check.state = CheckState::unknown;
        check.sentence = c.text("No phone is heard without the port.", "ポートが開いていないため受信できません。");
    }
    return check;
}

} // namespace

Check phoneCheck(const Case& c) {
    Check check = phonesState(c);
    check.sentence += lossSentence(c) + strangersSentence(c);
    return check;
}

} // namespace lumbrine
