#include "model/tracks/scripting_link.h"

#include <cassert>

namespace lumbrine {

ScriptingLink::ScriptingLink(const Jobs& jobs, ReceiverState& state, ActivityLog& log, const ReceiverPlatform& platform)
    : jobs(jobs), state(state), log(log),
      ptsl(platform.runtime, platform.streams, platform.json, log.text, "Tarnwick", "Lumbrine", platform.scripting),
      ptslQueue(jobs.runtime.serialQueue("com.tarnwick.lumbrine.ptsl", Priority::utility)) {}

void ScriptingLink::notePTSLSuccess() {
    assert(jobs.runtime.onMain());
    if (std::exchange(state.scripting.ptslOK, true)) return;
    state.published.health.scripting = {.state = LinkHealth::State::up};
    log.say("✓ Connected to Pro Tools' official API (track names and colors)",
            "✓ Pro Tools の公式 API に接続（トラック名・色を取得）");
}

void ScriptingLink::notePTSLFailure(const PTSLFailure& error) {
    assert(jobs.runtime.onMain());
    state.scripting.ptslOK = false;
    const std::string detail = description(error, log.text);
    state.published.health.scripting = {.state = LinkHealth::State::down, .detail = detail};
    if (std::exchange(state.scripting.ptslWarned, true)) return;
    log.say("Track colors: unavailable (" + detail + ") → names are read from the screen, no colors shown",
            "トラックの色: 取得できません（" + detail + "）→ 名前は画面から読み、色は出しません");
}

} // namespace lumbrine
