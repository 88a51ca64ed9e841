#include "platform/macos/screen_trust.h"

namespace lumbrine {

bool ScreenTrust::judge(bool systemSaysYes) {
    if (!systemSaysYes) refused = false;
    return systemSaysYes && !refused;
}

} // namespace lumbrine
