// A client of the Avahi daemon, on a thread of its own, that finds the daemon again after it was gone, and the message
// bus too. The thread sleeps until something happens; only without a message bus does it try again every few seconds.
#pragma once

#include <avahi-client/client.h>
#include <avahi-common/thread-watch.h>
#include <avahi-common/watch.h>

namespace lumbrine {

class AvahiSession {
public:
    // Who makes groups, browsers and resolvers from the client. All calls on the session's thread.
    class User {
    public:
        virtual ~User() = default;

        // The daemon is ready. Comes again after `pause`, with the same client, and after `down`, with another one.
        virtual void up(AvahiClient* client) = 0;

        // The daemon is changing the computer's name on the network; what was published must be withdrawn.
        virtual void pause() = 0;

        // The client is gone, and everything that was made from it.
        virtual void down() = 0;
    };

    // True when a daemon answers now.
    static bool daemonAnswers();

    // Returns at once. `sessionUser` outlives the session.
    explicit AvahiSession(User& sessionUser);

    // Everything made from the client is gone; no call comes any more.
    ~AvahiSession();

    AvahiSession(const AvahiSession&) = delete;
    AvahiSession& operator=(const AvahiSession&) = delete;

    // For a user whose group or browser has failed: makes everything anew after a while. On the session's thread.
    void startOver();

private:
    void renew();
    void renewAfter(unsigned milliseconds);
    void changed(AvahiClient* changedClient, AvahiClientState state);
    void freeClient();

    User& user;
    AvahiThreadedPoll* poll = nullptr;
    AvahiTimeout* renewal = nullptr;
    AvahiClient* client = nullptr;
};

} // namespace lumbrine
