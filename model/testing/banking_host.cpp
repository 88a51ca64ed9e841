#include "model/testing/banking_host.h"

#include "model/bank/bank_step.h"

#include <algorithm>
#include <utility>

namespace lumbrine {

BankingHost::BankingHost(ModelBench& modelBench, std::vector<std::string> trackNames)
    : names(std::move(trackNames)), bench(modelBench),
      connection(bench.midi.connect("Lumbrine", [this](ByteView packet) { heard(packet); })) {
    show();
}

void BankingHost::show() {
    for (int strip = 0; strip < stripsPerSurface; ++strip) {
        bench.surfaceA.name(strip, nameOn(strip));
        const auto track = static_cast<std::size_t>(offset + strip);
        if (track < faders.size()) bench.surfaceA.fader(strip, faders[track]);
    }
}

void BankingHost::scrollTo(int newOffset) {
    if (newOffset == offset) return;
    offset = newOffset;
    show();
}

void BankingHost::heard(ByteView packet) {
    if (deaf || packet.size() != 3 || packet[0] != 0xB0) return;
    if (packet[1] == 0x0F) zone = packet[2];
    if (packet[1] != 0x2F) return;
    const bool on = packet[2] >= 0x40;
    const int port = packet[2] & 0x0F;
    if (zone == hui::bankZone && on) press(port);
    if (zone < stripsPerSurface && port == hui::autoPort) holdAuto(zone, on);
}

void BankingHost::press(int port) {
    const int bank = offset / stripsPerSurface * stripsPerSurface;
    int next = offset;
    if (port == bank_port::channelBack) next = offset - 1;
    if (port == bank_port::bankBack) next = offset == bank ? bank - stripsPerSurface : bank;
    if (port == bank_port::channelForward) next = offset + 1;
    if (port == bank_port::bankForward) next = bank + stripsPerSurface;
    scrollTo(std::clamp(next, 0, lastOffset()));
}

void BankingHost::holdAuto(int strip, bool held) {
    const auto track = static_cast<std::size_t>(offset + strip);
    if (track >= modes.size()) return;
    std::string text = modes[track];
    text.resize(4, ' ');
    bench.surfaceA.name(strip, held ? text : nameOn(strip));
}

int BankingHost::lastOffset() const {
    return std::max(static_cast<int>(names.size()) - stripsPerSurface, 0);
}

std::string BankingHost::nameOn(int strip) const {
    const auto track = static_cast<std::size_t>(offset + strip);
    std::string name = track < names.size() ? names[track] : "";
    name.resize(4, ' ');
    return name;
}

std::vector<std::string> numbers(int count) {
    std::vector<std::string> names;
    for (int i = 1; i <= count; ++i)
        names.push_back((i < 10 ? "0" : "") + std::to_string(i));
    return names;
}

} // namespace lumbrine
