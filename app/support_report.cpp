#include "app/support_report.h"

#include "app/blackbox_setting.h"
#include "blackbox/support/recording_file.h"
#include "blackbox/support/report.h"

namespace lumbrine {

std::filesystem::path recordingPath(const LinuxSystemInfo& system) {
    const auto setting = blackboxSetting(system.environment("LUMBRINE_BLACKBOX"), system.stateFolder());
    const std::filesystem::path path =
        setting ? setting->path : blackboxSetting(std::nullopt, system.stateFolder())->path;
    // Older service managers keep the state of a user's services among the settings.
    const auto home = system.environment("HOME");
    const std::filesystem::path ofService = std::filesystem::path(home.value_or("")) / ".config/lumbrine/blackbox";
    return !exists(path) && exists(ofService) ? ofService : path;
}

std::expected<void, std::string> saveSupportReport(const std::filesystem::path& recording,
                                                   const std::filesystem::path& file, const std::string& diagnosis) {
    const auto ring = blackbox::loadRecording(recording);
    if (!ring) return std::unexpected(recording.string() + " " + ring.error());
    const auto saved = blackbox::saveRecording(file, blackbox::reportOf(*ring, diagnosis));
    if (!saved) return std::unexpected(file.string() + " " + saved.error());
    return {};
}

} // namespace lumbrine
