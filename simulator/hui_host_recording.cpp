// SimulatedHUIHost: calls of the recorder.
#include "simulator/simulated_hui_host.h"

namespace lumbrine {

void SimulatedHUIHost::recordTo(HostRecorder& hostRecorder) {
    recorder = &hostRecorder;
    automation.onSet = [this](int modePort, AutomationKeys::Strip strip) {
        recordAct(HostAct::Kind::mode, strip.surface, strip.number, modePort);
    };
}

void SimulatedHUIHost::recordBank() {
    if (recorder == nullptr) return;
    HostRecorder::TracksOnStrips tracks{};
    for (std::size_t i = 0; i < tracks.size(); ++i)
        if (const int surface = static_cast<int>(i) / hui_address::stripCountOfSurface; surface < options.surfaces)
            tracks[i] = trackOn(surface, static_cast<int>(i) % hui_address::stripCountOfSurface);
    recorder->bank(bankOffset, tracks);
}

void SimulatedHUIHost::recordShown(int surface, const SurfacePicture& picture) {
    if (recorder == nullptr) return;
    for (int strip = 0; strip < hui_address::stripCountOfSurface; ++strip) {
        const auto index = static_cast<std::size_t>(strip);
        const DisplayText& text = picture.displays[index];
        recorder->show(surface * hui_address::stripCountOfSurface + strip, picture.tracks[index],
                       {text.begin(), text.end()});
    }
}

void SimulatedHUIHost::recordAct(HostAct::Kind kind, int surface, int strip, int detail) {
    if (recorder != nullptr)
        recorder->act(kind, surface * hui_address::stripCountOfSurface + strip, detail, trackOn(surface, strip));
}

} // namespace lumbrine
