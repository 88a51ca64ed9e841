// The keys of the list of tracks: moving about in it, marking, and commands to many tracks at once.
#pragma once

#include "remote/command_builder.h"
#include "remote/remote_client.h"
#include "remote/terminal.h"
#include "remote/view_state.h"

#include <vector>

namespace lumbrine::remote {

class SessionConsole {
public:
    explicit SessionConsole(RemoteClient& remoteClient) : client(remoteClient) {}

    // How many tracks the page has room for.
    void setLines(int count);

    // The list as it is now: the cursor is on a track, that track is on the page, and only tracks are marked.
    SessionList list() const;

    // Moves the cursor there, or as near as there are tracks; some tracks before it are on the page too.
    void jumpTo(int track);

    // Keys that need no control; true when it was one of them.
    bool pressListKey(Key key);

    // Keys that ask the receiver for something; only while this client is in control.
    void pressCommandKey(Key key);

    // To the marked tracks, or to the one under the cursor when none is.
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
