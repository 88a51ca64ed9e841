#include "model/hands/reconnection.h"

#include "model/state/screen_permission.h"
#include "screen/pt_reconnector.h"

#include <cassert>
#include <string>
#include <utility>

namespace lumbrine {

namespace {

constexpr Duration lookInterval = seconds(0.1);

} // namespace

Reconnection::Reconnection(const Jobs& jobs, ReceiverState& state, ActivityLog& log, Accessibility& accessibility,
                           Surfaces& surfaces)
    : jobs(jobs), state(state), log(log), accessibility(accessibility), surfaces(surfaces) {}

void Reconnection::reconnectToPT() {
    assert(jobs.runtime.onMain());
    if (reconnecting) return;
    if (state.published.huiConnected) {
        log.say("Already connected to Pro Tools", "既に Pro Tools と接続中です");
    } else if (accessibility.isTrusted()) {
        state.published.health.screen = {.state = LinkHealth::State::up};
        begin();
    } else {
        askForPermission();
    }
}

void Reconnection::askForPermission() {
    state.published.health.screen = {.state = LinkHealth::State::down};
    log.say("⚠️ This feature requires Accessibility permission", "⚠️ この機能には「アクセシビリティ」権限が必要です");
    log.say("   (it opens and closes PT's Peripherals dialog for you so PT re-grabs the MIDI ports)",
            "   （PT のペリフェラル画面を代わりに開閉して、MIDI ポートを掴み直させるため）");
    log.say("   Allow it in System Settings ▸ Privacy & Security ▸ Accessibility, then press the button again",
            "   システム設定 ▸ プライバシーとセキュリティ ▸ アクセシビリティ で許可 → もう一度押してください");
    if (std::exchange(asked, true))
        log.say("   If Lumbrine is switched on there already: remove it with “−” and add it again",
                "   既にオンになっている場合は、「−」で Lumbrine を削除してから追加し直してください");
    accessibility.isTrustedOrPrompt();
}

void Reconnection::begin() {
    reconnecting = true;
    log.say("→ Opening and closing PT's Peripherals dialog so it re-grabs the ports…",
            "→ PT のペリフェラル画面を開閉して、ポートを掴み直させます…");
    surfaces.announce(SurfaceID::A);
    jobs.inBackground(Priority::userInitiated, [this] {
        const PTReconnector::Outcome outcome = PTReconnector::run(accessibility, jobs.runtime, log.text);
        jobs.runOnMain([this, outcome] {
            log.appendLog(outcome.line);
            if (outcome.refused) explainRefusal();
            awaitPings(jobs.runtime.now() + patience);
        });
    });
}

void Reconnection::explainRefusal() {
    if (!accessibility.isTrusted()) return askForPermission(); // withdrawn since
    state.published.health.screen = {.state = LinkHealth::State::down, .detail = "stale"};
    sayThatTheScreenIsRefused(log);
    accessibility.isTrustedOrPrompt();
}

void Reconnection::awaitPings(TimePoint deadline) {
    const bool connected = state.published.huiConnected;
    if (!connected && jobs.runtime.now() < deadline)
        return jobs.onMainAfter(lookInterval, [this, deadline] { awaitPings(deadline); });
    reconnecting = false;
    if (connected) return;
    log.say("✗ Still not connected. In PT's Setup ▸ Peripherals ▸ MIDI Controllers, "
            "set Type = HUI / Receive From = Lumbrine / Send To = Lumbrine and close the dialog with OK",
            "✗ まだ繋がりません。PT の 設定▸ペリフェラル▸MIDIコントローラー で "
            "Type = HUI / Receive From = Lumbrine / Send To = Lumbrine に設定し、OK で閉じてください");
}

} // namespace lumbrine
