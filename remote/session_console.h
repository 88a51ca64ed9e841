// The keys of the list of tracks: moving the cursor, marking tracks, and commands for several tracks at once.
#pragma once

#include "remote/command_builder.h"
#include "remote/remote_client.h"
#include "remote/terminal.h"
#include "remote/view_state.h"

#include <vector>

namespace lumbrine::remote {

class SessionConsole {
public:
    explicit SessionConsole(RemoteClient& client) : client(client) {}

    // Sets the number of tracks that fit on the page.
    void setLines(int count);

    // The current list, adapted to the current session: the cursor is on an existing track, that track is on the page,
    // and only existing tracks are marked.
    SessionList list() const;

    // Moves the cursor to this track, or to the last one if the session has fewer. Some tracks before it are shown too.
    void jumpTo(int track);

    // Handles the keys that work without control. Returns true when it was one of them.
    bool pressListKey(Key key);

    // Handles the keys that send commands. Call it only while this client is in control.
    void pressCommandKey(Key key);

    // Commands for the marked tracks, or for the track under the cursor when none is marked.
    void setFaders(FaderValue value);
    void setAutoMode(AutoModeKey key);

private:
    using GroupSwitch = Bytes (*)(bool enabled, std::span<const Member> members);

    void goTo(int track);
    void toggleMark();
    void toggle(GroupSwitch command, bool (*isOn)(const SessionPicture& picture, Member track));
    void capturePage();
    std::vector<Member> members() const;

    RemoteClient& client;
    SessionList state;
    int lines = 16;
};

} // namespace lumbrine::remote
