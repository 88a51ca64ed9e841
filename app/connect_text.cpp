#include "app/connect_text.h"

namespace lumbrine {

ConnectText connectText(const PublishedState& published, const std::vector<std::string>& reachable,
                        const std::string& pageLink, const Bilingual& text) {
    const std::string port = ":" + std::to_string(published.health.port);
    ConnectText made{.title = text("Connect a phone", "スマートフォンを接続"),
                     .advice =
                         text("Scan the code with the phone, or enter one of these addresses in the app. The phone "
                              "must be on the same network.",
                              "スマートフォンでコードを読み取るか、アプリにアドレスを入力してください。スマートフォンは"
                              "同じネットワークに接続されている必要があります。"),
                     .addresses = {published.localIP + port},
                     .link = "lumbrine://" + published.localIP + port,
                     .pageAdvice = {},
                     .pageLink = pageLink,
                     .keysButton = text("Keys…", "鍵…"),
                     .closeButton = text("Close", "閉じる")};
    if (!pageLink.empty())
        made.pageAdvice =
            text("Or scan this code: it opens the faders in the phone's browser, without an app. The code "
                 "contains the key to them.",
                 "または、このコードを読み取ると、アプリなしでスマートフォンのブラウザにフェーダーが"
                 "開きます。コードには操作用のキーが含まれています。");
    for (const std::string& address : reachable)
        if (address != published.localIP) made.addresses.push_back(address + port);
    return made;
}

} // namespace lumbrine
