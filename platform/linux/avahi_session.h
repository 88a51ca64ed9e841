// A client of the Avahi daemon on its own thread. It reconnects after a restart of the daemon or of the message bus.
// The thread sleeps until something happens; only while there is no message bus does it retry every two seconds.
#pragma once

#include <avahi-client/client.h>
#include <avahi-common/thread-watch.h>
#include <avahi-common/watch.h>

namespace lumbrine {

class AvahiSession {
public:
    // Creates groups, browsers and resolvers from the client. All its functions are called on the session's thread.
    class User {
    public:
        virtual ~User() = default;

        // The daemon is ready. Called again after `pause` with the same client, and after `down` with a new client.
        virtual void up(AvahiClient* client) = 0;

        // No daemon answers at the moment. `up` follows when one does.
        virtual void absent() {}

        // The daemon is changing the computer's name on the network. Published services must be withdrawn until `up`.
        virtual void pause() = 0;

        // The client is gone, and with it everything that was created from it.
        virtual void down() = 0;
    };

    // True when a daemon answers now.
    static bool daemonAnswers();

    // Returns at once and connects in the background. `user` must outlive the session.
    explicit AvahiSession(User& user);

    // Destroys everything that was created from the client. No call follows.
    ~AvahiSession();

    AvahiSession(const AvahiSession&) = delete;
    AvahiSession& operator=(const AvahiSession&) = delete;

    // For a user whose group or browser has failed: after two seconds, calls `down` and connects with a new client.
    // Only on the session's thread.
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
