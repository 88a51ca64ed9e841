#include "platform/macos/announcement_failure.h"

namespace lumbrine {

namespace {

std::string reason(int code, const Bilingual& text) {
    switch (code) {
    case -65555: // kDNSServiceErr_NoAuth
    case -65570: // kDNSServiceErr_PolicyDenied
        return text("this Mac does not let Lumbrine use the local network; allow it in System Settings ▸ Privacy & "
                    "Security ▸ Local Network",
                    "この Mac が Lumbrine のローカルネットワーク利用を許可していません。システム設定 ▸ "
                    "プライバシーとセキュリティ ▸ ローカルネットワーク で許可してください");
    case -72008: // the bundle's Info.plist does not list the service type
        return text("the application was packed without the name of its service",
                    "アプリのパッケージにサービス名が登録されていません");
    case -65563: // kDNSServiceErr_ServiceNotRunning
        return text("the system's Bonjour service is not running", "システムの Bonjour サービスが動いていません");
    case -72001: // NSNetServicesCollisionError
        return text("the name is taken", "名前が使われています");
    default:
        return text("the system refused", "システムが拒否しました");
    }
}

} // namespace

std::string announcementFailureText(int code, const Bilingual& text) {
    return reason(code, text) + " (" + std::to_string(code) + ")";
}

} // namespace lumbrine
