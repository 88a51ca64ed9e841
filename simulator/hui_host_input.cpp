// SimulatedHUIHost: the effects of surface messages on the session.
#include "simulator/simulated_hui_host.h"

#include <algorithm>

namespace lumbrine {

namespace {

constexpr double panRange = 100;
constexpr double ringPositionsEachSide = 5;
constexpr Duration wound = seconds(5); // by one press of rewind or fast forward
constexpr Duration sessionLength = seconds(240);
constexpr Duration jogged = seconds(0.1); // by one click

} // namespace

void SimulatedHUIHost::act(int surface, const from_surface::Reset&, TimePoint now) {
    letGoOfEverything(surface);
    if (!session.isOpen() && !options.pingWithoutSession) return;
    HUISurfaceHost& port = at(surface).port;
    if (!port.answering()) {
        port.pingNow(now);
        return;
    }
    if (options.resetIsGoodbye) {
        port.giveUp();
        port.advance(now, true);   // pings it at once
        return moveTo(bankOffset); // the bank has become narrower
    }
    if (options.fill != Fill::sessionOpen) port.forget();
    port.pingWithDump();
    needsShowing = true;
}

void SimulatedHUIHost::act(int surface, const from_surface::PingReply&, TimePoint) {
    if (!at(surface).port.replied()) return;
    // A reset that is a goodbye ends with the next reply.
    const bool endsReset = options.fill == Fill::reset && options.resetIsGoodbye;
    if (options.fill == Fill::replyAndReset || endsReset) {
        at(surface).port.forget();
    } else {
        believeShown(surface);
    }
    moveTo(bankOffset); // the bank has become wider
}

void SimulatedHUIHost::act(int surface, const from_surface::SwitchEdge& edge, TimePoint) {
    const bool ofStrip = edge.zone < hui_address::stripCountOfSurface;
    if (ofStrip && edge.port == hui_address::touch) {
        touchEdge(surface, edge.zone, edge.on);
        return;
    }
    Surface& from = at(surface);
    const std::size_t index = ledIndex(edge.zone, edge.port);
    if (edge.on && losesPresses && options.dropOnePressIn > 0 &&
        chance.below(static_cast<std::uint64_t>(options.dropOnePressIn)) == 0) {
        from.ignoredUntilUp[index] = true;
        ++dropped;
    }
    if (from.ignoredUntilUp[index]) {
        if (!edge.on) from.ignoredUntilUp[index] = false;
        return;
    }
    from.down[index] = edge.on;

    if (ofStrip && edge.port == hui_address::automation) {
        automation.autoSwitch({surface, edge.zone}, edge.on, automationScope());
        needsShowing = true;
    } else if (edge.zone == hui_address::autoModeZone) {
        automation.modeKey(surface, edge.port, edge.on, automationScope());
    } else if (!edge.on) {
        return;
    } else if (ofStrip) {
        stripPressed(surface, edge.zone, edge.port);
    } else if (edge.zone == hui_address::bankZone && edge.port <= static_cast<int>(BankButton::bankRight)) {
        if (recorder != nullptr) recorder->bankPressed();
        bank(static_cast<BankButton>(edge.port));
    } else if (edge.zone == hui_address::assignZone) {
        assignPressed(surface, edge.port);
    } else if (edge.zone == hui_address::transportZone) {
        transportPressed(edge.port);
    } else if (edge.zone == hui_address::transport2Zone) {
        transport2Pressed(edge.port);
    }
}

AutomationKeys::Scope SimulatedHUIHost::automationScope() const {
    using enum AutomationKeys::Scope;
    const auto isDown = [this](int port) { return isDownAnywhere(hui_address::keyboardZone, port); };
    if (isDown(hui_address::option)) return isDown(hui_address::shift) ? selected : allTracks;
    return options.groups && !isDown(hui_address::clutch) ? strips : noGroups;
}

void SimulatedHUIHost::touchEdge(int surface, int strip, bool on) {
    int& touched = at(surface).touchedTrack[static_cast<std::size_t>(strip)];
    if (on == (touched != 0)) return;
    if (on) {
        recordAct(HostAct::Kind::touch, surface, strip, 0);
        touched = trackOn(surface, strip);
        if (touched != 0) groups.touch(touched);
        return;
    }
    groups.release(touched);
    touched = 0;
    if (options.faderEcho == FaderEcho::afterRelease) at(surface).port.forgetFader(strip);
    needsShowing = true;
}

void SimulatedHUIHost::act(int surface, const from_surface::FaderMoved& moved, TimePoint now) {
    // Without answered pings, Pro Tools ignores the faders of a surface and nothing else.
    if (!at(surface).port.answering()) return;
    recordAct(HostAct::Kind::move, surface, moved.strip, moved.position.raw());
    const int track = trackOn(surface, moved.strip);
    const bool obeyed = options.untouchedMove == UntouchedMove::obeyed || isTouched(surface, moved.strip);
    if (!obeyed && options.untouchedMove == UntouchedMove::ignored) return;
    if (obeyed && track != 0) {
        groups.move(track, moved.position);
        showValue(track, false, now);
    }
    // The surface's fader has moved, so the position must be sent even if it equals the one sent before.
    at(surface).port.forgetFader(moved.strip);
    needsShowing = true;
}

void SimulatedHUIHost::act(int surface, const from_surface::VPotTurned& turned, TimePoint now) {
    if (turned.pot >= hui_address::stripCountOfSurface || at(surface).assign != hui_address::pan) return;
    recordAct(HostAct::Kind::turn, surface, turned.pot, turned.clicks);
    const bool right = at(surface).rightPan;
    const double step = panRange / ringPositionsEachSide / options.clicksPerRingPosition;
    const int clicks = std::clamp(turned.clicks, -options.mostClicks, options.mostClicks);
    const int turnedTrack = trackOn(surface, turned.pot);
    if (turnedTrack != 0) showValue(turnedTrack, true, now);
    session.change(turnedTrack, [&](SimulatedTrack& track) {
        double& side = right && track.stereo ? track.panRight : track.panLeft;
        side = std::clamp(side + clicks * step, -panRange, panRange);
    });
}

void SimulatedHUIHost::showValue(int track, bool ofPan, TimePoint now) {
    const bool fine = isDownAnywhere(hui_address::keyboardZone, hui_address::fine);
    if (options.valuesShown == ValuesShown::never || (options.valuesShown == ValuesShown::withFine && !fine)) return;
    valuesShown[track] = {ofPan, now + options.valueShownFor};
    needsShowing = true;
}

void SimulatedHUIHost::act(int, const from_surface::JogTurned& turned, TimePoint) {
    session.locate(session.transport().position + turned.clicks * jogged);
}

void SimulatedHUIHost::stripPressed(int surface, int strip, int port) {
    recordAct(HostAct::Kind::press, surface, strip, port);
    const int track = trackOn(surface, strip);
    switch (port) {
    case hui_address::select:
        session.select(track, isDownAnywhere(hui_address::keyboardZone, hui_address::shift));
        break;
    case hui_address::mute:
        session.change(track, [](SimulatedTrack& pressed) { pressed.mute = !pressed.mute; });
        break;
    case hui_address::solo:
        session.change(track, [](SimulatedTrack& pressed) { pressed.solo = !pressed.solo; });
        break;
    case hui_address::recordArm:
        session.change(track, [](SimulatedTrack& pressed) { pressed.recordArmed = !pressed.recordArmed; });
        break;
    default:
        break;
    }
}

void SimulatedHUIHost::assignPressed(int surface, int port) {
    Surface& pressed = at(surface);
    if (port == hui_address::pan) pressed.rightPan = pressed.assign == hui_address::pan && !pressed.rightPan;
    pressed.assign = port;
    needsShowing = true;
}

void SimulatedHUIHost::transportPressed(int port) {
    const Duration position = session.transport().position;
    switch (port) {
    case hui_address::rewind:
        session.locate(position - wound);
        break;
    case hui_address::fastForward:
        session.locate(position + wound);
        break;
    case hui_address::stop:
        session.stop();
        break;
    case hui_address::play:
        session.play();
        break;
    case hui_address::record:
        session.record();
        break;
    default:
        break;
    }
}

void SimulatedHUIHost::transport2Pressed(int port) {
    switch (port) {
    case hui_address::returnToZero:
        session.locate(Duration::zero());
        break;
    case hui_address::toEnd:
        session.locate(sessionLength);
        break;
    case hui_address::onLine:
        session.toggleOnLine();
        break;
    case hui_address::loop:
        session.toggleLoop();
        break;
    case hui_address::quickPunch:
        session.toggleQuickPunch();
        break;
    default:
        break;
    }
}

// A release is never frozen: a held switch must not stay down after the dialog.
bool SimulatedHUIHost::frozenAgainst(const SurfaceMessage& message) const {
    if (!dialog || std::holds_alternative<from_surface::PingReply>(message)) return false;
    const auto* const edge = std::get_if<from_surface::SwitchEdge>(&message);
    return edge == nullptr || edge->on;
}

bool SimulatedHUIHost::isDownAnywhere(int zone, int port) const {
    return std::ranges::any_of(surfaces, [&](const auto& surface) { return surface->down[ledIndex(zone, port)]; });
}

void SimulatedHUIHost::letGoOfEverything(int surface) {
    Surface& gone = at(surface);
    for (int strip = 0; strip < hui_address::stripCountOfSurface; ++strip)
        touchEdge(surface, strip, false);
    automation.releaseAll(surface);
    gone.down.reset();
    gone.ignoredUntilUp.reset();
    needsShowing = true;
}

} // namespace lumbrine
