#include "remote/session_picture.h"

#include <string_view>

namespace lumbrine::remote {
namespace {

template <typename T>
bool update(T& field, const T& value) {
    if (field == value) return false;
    field = value;
    return true;
}

std::string withoutBlanksAround(std::string_view text) {
    const std::size_t first = text.find_first_not_of(' ');
    if (first == std::string_view::npos) return {};
    return std::string(text.substr(first, text.find_last_not_of(' ') - first + 1));
}

// Applies each kind of message to the picture. Returns true when something changed.
struct Painter {
    SessionPicture& picture;

    bool operator()(const TrackName& message) const {
        return update(picture.at(message.strip).name, withoutBlanksAround(message.name));
    }
    bool operator()(const Meters& message) const { return updateEach(message.strips, &StripPicture::meters); }
    bool operator()(const Fader& message) const {
        bool changed = update(picture.at(message.strip).fader, message.value);
        const bool isLast = message.strip.index() == picture.shownStrips - 1;
        if (isLast && picture.bankOffset) changed |= update(picture.settledOffset, picture.bankOffset);
        return changed;
    }
    bool operator()(const Switches& message) const { return updateEach(message.strips, &StripPicture::lights); }
    bool operator()(const Pan& message) const {
        return update(picture.at(message.strip).pan[static_cast<std::size_t>(message.side)], message.ring);
    }
    bool operator()(const PanMode& message) const { return update(picture.panRight, message.right); }

    bool operator()(const BankPos& message) const {
        bool changed = update(picture.bankOffset, message.offset);
        changed |= update(picture.trackCount, message.trackCount);
        changed |= update(picture.shownStrips, static_cast<int>(message.shownStrips));
        const auto gone = picture.session.lower_bound(message.trackCount);
        changed |= gone != picture.session.end();
        picture.session.erase(gone, picture.session.end());
        return changed;
    }

    bool operator()(const Selects& message) const { return updateEach(message.strips, &StripPicture::select); }
    bool operator()(const FullName& message) const { return update(picture.at(message.strip).fullName, message.name); }
    bool operator()(const Colors& message) const { return updateEach(message.strips, &StripPicture::color); }
    bool operator()(const InputMons& message) const { return updateEach(message.strips, &StripPicture::inputMonitor); }
    bool operator()(const TrackRow& message) const {
        return update(picture.session[message.index].row, std::optional<TrackRow>(message));
    }
    bool operator()(const AutoModes& message) const { return updateEach(message.strips, &StripPicture::autoMode); }
    bool operator()(const Transport& message) const { return update(picture.transport, message); }
    bool operator()(const SessAutoChunk& message) const {
        return updateSession(message.first, message.modes, &SessionTrack::autoMode);
    }
    bool operator()(const SessPanChunk& message) const {
        return updateSession(message.first, message.pans, &SessionTrack::pan);
    }
    bool operator()(const Busy&) const { return false; }
    bool operator()(const Pong&) const { return false; }

private:
    template <typename T>
    bool updateEach(const std::vector<T>& values, T StripPicture::* field) const {
        bool changed = false;
        for (std::size_t i = 0; i < values.size(); ++i)
            changed |= update(picture.strips[i].*field, static_cast<T>(values[i]));
        return changed;
    }

    template <typename T>
    bool updateSession(std::size_t first, const std::vector<T>& values, T SessionTrack::* field) const {
        bool changed = false;
        for (std::size_t i = 0; i < values.size(); ++i)
            changed |= update(picture.session[static_cast<std::uint16_t>(first + i)].*field, values[i]);
        return changed;
    }
};

} // namespace

bool SessionPicture::apply(const ReceiverMessage& message) {
    return std::visit(Painter{*this}, message);
}

bool SessionPicture::moveFader(Strip strip, FaderValue value) {
    return update(at(strip).fader, value);
}

} // namespace lumbrine::remote
