#include "model/hands/surfaces.h"

#include <utility>

namespace lumbrine {

namespace {

constexpr int presenceCount = 3;

// Four-character codes. They must never change: Pro Tools knows the ports by them.
constexpr std::int32_t sourceA = 0x4C6D5253;      // "LmRS"
constexpr std::int32_t destinationA = 0x4C6D5244; // "LmRD"
constexpr std::int32_t sourceB = 0x4C6D5342;      // "LmSB"
constexpr std::int32_t destinationB = 0x4C6D4442; // "LmDB"

} // namespace

using State = LinkHealth::State;

Surfaces::Surfaces(Runtime& runtime, PublishedState& published, MIDIServices& services, ActivityLog& log)
    : published(published), log(log),
      midi(std::make_shared<MIDIHost>(runtime, services, "Lumbrine", sourceA, destinationA)),
      midiB(std::make_shared<MIDIHost>(runtime, services, "Lumbrine B", sourceB, destinationB)),
      hui(std::make_shared<HUIEngine>(runtime, log.text)), huiB(std::make_shared<HUIEngine>(runtime, log.text)) {}

void Surfaces::wire(const std::weak_ptr<SurfaceListener>& listener) {
    wireSurface(SurfaceID::A, hui, midi, listener);
    wireSurface(SurfaceID::B, huiB, midiB, listener);
    for (MIDIHost* host : {midi.get(), midiB.get()})
        host->onIDRefused = [this, weak = listener, name = host->name](const MIDIError& error) {
            if (const auto held = weak.lock()) reportRefusedID(name, error);
        };
}

void Surfaces::startSurfaces() {
    for (MIDIHost* host : {midi.get(), midiB.get()}) {
        if (const auto started = host->start(); !started) {
            const std::string& why = started.error().description;
            note(State::down, why);
            if (std::exchange(failure, why) == why) return;
            log.say("✗ MIDI failed: " + why, "✗ MIDI 失敗: " + why);
            return;
        }
    }
    created = true;
    note(State::up);
    log.say("✓ Virtual MIDI 'Lumbrine' + 'Lumbrine B' created (ch 1-8 + 9-16)",
            "✓ 仮想MIDI 'Lumbrine' + 'Lumbrine B' 生成（8ch＋9〜16ch）");
    announce(SurfaceID::A);
    announce(SurfaceID::B);
}

void Surfaces::serviceChanged(bool isThere) {
    if (!created) {
        if (isThere) startSurfaces();
    } else if (isThere) {
        note(State::up);
        log.say("✓ MIDI server back", "✓ MIDI サーバー復帰");
    } else {
        note(State::down);
        log.say("⚠️ MIDI server lost", "⚠️ MIDI サーバー切断");
    }
}

void Surfaces::note(State state, const std::string& detail) {
    published.health.midi = {.state = state, .detail = detail};
    published.changed();
}

void Surfaces::watchConnections() {
    const auto a = midi->isTaken(), b = midiB->isTaken();
    Health& health = published.health;
    if (health.surfaceAIsTaken == a && health.surfaceBIsTaken == b) return;
    health.surfaceAIsTaken = a;
    health.surfaceBIsTaken = b;
    published.changed();
}

void Surfaces::reportDropped() {
    const std::uint64_t dropped = midi->dropped() + midiB->dropped();
    if (std::exchange(droppedBefore, dropped) != dropped || droppedLogged == dropped) return;
    const std::uint64_t count = dropped - std::exchange(droppedLogged, dropped);
    const std::string number = std::to_string(count);
    log.say("⚠️ MIDI: " + number + (count == 1 ? " message dropped" : " messages dropped"),
            "⚠️ MIDI: メッセージ " + number + " 件を送れませんでした");
}

void Surfaces::reportRefusedID(const std::string& name, const MIDIError& error) {
    log.sayOnceAMinute("⚠️ MIDI: '" + name + "' has no lasting identity (" + error.description +
                           "); Pro Tools may have to be given its ports again",
                       "⚠️ MIDI: '" + name + "' の識別番号を設定できません（" + error.description +
                           "）。Pro Tools でポートを選び直す必要があるかもしれません");
}

void Surfaces::announce(SurfaceID surface) {
    (surface == SurfaceID::A ? midi : midiB)->announcePresence(presenceCount);
}

void Surfaces::letGo() {
    hui->letGoForGood();
    huiB->letGoForGood();
}

bool Surfaces::hwMute(int strip, int port) {
    const auto shown = Strip::of(strip);
    return !shown || engineOf(*shown).pressByHand(shown->engineStrip(), port);
}

bool Surfaces::showLabel(Strip strip, std::string_view text, bool isName) {
    return engineOf(strip).showLabel(strip.engineStrip(), text, isName);
}

void Surfaces::tellLabel(Strip strip, std::string_view text, bool isName, Ownership owner) {
    engineOf(strip).tellLabel(strip.engineStrip(), text, isName, owner.number);
}

std::optional<std::uint64_t> Surfaces::knownLabel(Strip strip) {
    return engineOf(strip).knownLabel(strip.engineStrip());
}

void Surfaces::newOwner(Ownership owner) {
    const HandsOwner hands{.number = owner.number, .isNewcomer = owner.isNewcomers};
    hui->newOwner(hands);
    huiB->newOwner(hands);
}

void Surfaces::closeToHands() {
    hui->closeToHands();
    huiB->closeToHands();
}

void Surfaces::openToHands() {
    hui->openToHands();
    huiB->openToHands();
}

void Surfaces::letHandsGo() {
    hui->letHandsGo();
    huiB->letHandsGo();
}

void Surfaces::loseTouch() {
    hui->loseTouch();
    huiB->loseTouch();
}

} // namespace lumbrine
