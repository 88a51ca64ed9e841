#include "model/state/screen_permission.h"

namespace lumbrine {

void sayThatTheScreenIsRefused(ActivityLog& log) {
    log.say(
        "⚠️ The system does not let Lumbrine read Pro Tools' windows although it is allowed to. In System Settings ▸ "
        "Privacy & Security ▸ Accessibility remove Lumbrine with “−” and add it again",
        "⚠️ 許可されているのに、システムが Pro Tools の画面の読み取りを拒否しています。システム設定 ▸ "
        "プライバシーとセキュリティ ▸ アクセシビリティ で Lumbrine を「−」で削除し、もう一度追加してください");
}

} // namespace lumbrine
