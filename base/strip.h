// A channel strip across both surfaces: 0-7 on surface A, 8-15 on surface B.
#pragma once

#include <cstddef>
#include <optional>

namespace lumbrine {

inline constexpr int stripsPerSurface = 8;
inline constexpr int stripCount = 16;

enum class SurfaceID { A, B };

// Always in range: a number from outside becomes a Strip only through `of`.
class Strip {
public:
    static constexpr std::optional<Strip> of(int index) {
        if (index < 0 || index >= stripCount) return std::nullopt;
        return Strip(index);
    }

    // The strip that a surface's own engine calls `engineStrip` (0-7).
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
