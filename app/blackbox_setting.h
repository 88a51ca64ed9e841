// Whether, where and how large the receiver's recording is, as LUMBRINE_BLACKBOX says.
#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>

namespace lumbrine {

struct BlackboxSetting {
    static constexpr std::size_t usualSize = std::size_t{16} << 20;

    std::filesystem::path path; // empty when no folder is known
    std::size_t size = usualSize;

    bool operator==(const BlackboxSetting&) const = default;
};

// The value is "0" for no recording, a number for its size in MiB (1 to 1024), or a path of its file. Without a value,
// and with an empty one, everything is as usual: 16 MiB in the file "blackbox" of `stateFolder`. Absent for none.
std::optional<BlackboxSetting> blackboxSetting(const std::optional<std::string>& value,
                                               const std::optional<std::string>& stateFolder);

} // namespace lumbrine
