// What one strip's display says, and what the client was told of it. Hands act on a strip only while the client knows
// which track is there.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <string_view>

namespace lumbrine {

// The client in control.
struct HandsOwner {
    std::uint64_t number = 0; // of its ownership
    bool isNewcomer = false;  // it was never told anything before that ownership
};

class StripLabel {
public:
    // The client of that ownership was told this. `isName`: false for what stands over a name for a moment, as a value
    // or a mode; then the name that it was told before stays. On one thread; waits for nobody.
    void tell(std::string_view text, bool isName, std::uint64_t owner);

    // The rest is not thread-safe.

    // The display says this now. True when it is another name than before, so that another track may be there.
    bool show(std::string_view text, bool isName);

    // That client knows what the display says, so it means what is there: it was told so, or there is nothing to tell,
    // as before the first text and on a blank display. A newcomer that was told no name of the strip yet cannot mean
    // another track either: clients may act before they are told anything.
    // But nothing stands over a blank: a text there is of a track that the client was not told of.
    bool isKnownTo(HandsOwner owner) const;

    // The same, though a mode may stand over a blank: of a track whose name no display can show, while its mode is
    // asked for.
    bool isNameKnownTo(HandsOwner owner) const;

    // Another one for each name that follows another.
    std::uint64_t number() const { return names; }

private:
    using Text = std::array<char, 4>; // as a display has it

    struct Told {
        Text text;
        std::uint32_t owner : 31;
        std::uint32_t isName : 1;
    };
    static_assert(std::atomic<Told>::is_always_lock_free);

    static Text onDisplay(std::string_view text);

    bool isOtherThanToldTo(HandsOwner owner) const;

    static constexpr Text blank{' ', ' ', ' ', ' '};

    Text shown = blank;
    Text name = blank; // the last one that is no value
    std::atomic<Told> told = Told{.text = blank, .owner = 0, .isName = false};
    std::uint64_t names = 0;
};

} // namespace lumbrine
