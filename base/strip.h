// A channel strip of the two surfaces together: strips 0-7 are on surface A, strips 8-15 on surface B.
#pragma once

#include <cstddef>
#include <optional>

namespace lumbrine {

inline constexpr int stripsPerSurface = 8;
inline constexpr int stripCount = 16;

enum class SurfaceID { A, B };

// Always in range. A number becomes a Strip only through `of`, which is absent for a number out of range.
class Strip {
public:
    static constexpr std::optional<Strip> of(int index) {
        if (index < 0 || index >= stripCount) return std::nullopt;
        return Strip(index);
    }

    // From the number that one surface's engine uses for its strip (0-7).
    static constexpr std::optional<Strip> of(SurfaceID surface, int engineStrip) {
        if (engineStrip < 0 || engineStrip >= stripsPerSurface) return std::nullopt;
        return Strip(surface == SurfaceID::A ? engineStrip : engineStrip + stripsPerSurface);
    }

    constexpr int index() const { return value; }                                  // 0-15
    constexpr std::size_t slot() const { return static_cast<std::size_t>(value); } // 0-15, for arrays
    constexpr SurfaceID surface() const { return value < stripsPerSurface ? SurfaceID::A : SurfaceID::B; }
    constexpr int engineStrip() const { return value % stripsPerSurface; } // 0-7

    constexpr bool operator==(const Strip&) const = default;

private:
    explicit constexpr Strip(int index) : value(index) {}

    int value;
};

} // namespace lumbrine
