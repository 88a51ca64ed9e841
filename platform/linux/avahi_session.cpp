#include "platform/linux/avahi_session.h"

#include <avahi-common/error.h>
#include <avahi-common/simple-watch.h>
#include <avahi-common/timeval.h>
#include <sys/time.h>

#include <cassert>
#include <utility>

namespace lumbrine {

namespace {

constexpr unsigned retryMilliseconds = 2000;

} // namespace

bool AvahiSession::daemonAnswers() {
    AvahiSimplePoll* simple = avahi_simple_poll_new();
    const auto ignore = [](AvahiClient*, AvahiClientState, void*) {};
    AvahiClient* probe = avahi_client_new(avahi_simple_poll_get(simple), AvahiClientFlags{}, ignore, nullptr, nullptr);
    if (probe != nullptr) avahi_client_free(probe);
    avahi_simple_poll_free(simple);
    return probe != nullptr;
}

AvahiSession::AvahiSession(User& user) : user(user), poll(avahi_threaded_poll_new()) {
    assert(poll != nullptr);
    // The first client is created from a timer, like every later one, because connecting to the daemon blocks.
    const AvahiPoll* api = avahi_threaded_poll_get(poll);
    const auto onTimer = [](AvahiTimeout* /*timer*/, void* self) { static_cast<AvahiSession*>(self)->renew(); };
    renewal = api->timeout_new(api, nullptr, onTimer, this);
    renewAfter(0);
    avahi_threaded_poll_start(poll);
}

AvahiSession::~AvahiSession() {
    avahi_threaded_poll_stop(poll);
    freeClient();
    avahi_threaded_poll_free(poll);
}

void AvahiSession::startOver() {
    renewAfter(retryMilliseconds);
}

void AvahiSession::renewAfter(unsigned milliseconds) {
    timeval when{};
    avahi_elapse_time(&when, milliseconds, 0);
    avahi_threaded_poll_get(poll)->timeout_update(renewal, &when);
}

void AvahiSession::renew() {
    avahi_threaded_poll_get(poll)->timeout_update(renewal, nullptr);
    freeClient();
    const auto onChange = [](AvahiClient* changedClient, AvahiClientState state, void* self) {
        static_cast<AvahiSession*>(self)->changed(changedClient, state);
    };
    // Without a daemon, the client waits for one. Without a message bus, no client can be created.
    client = avahi_client_new(avahi_threaded_poll_get(poll), AVAHI_CLIENT_NO_FAIL, onChange, this, nullptr);
    if (client != nullptr) return;
    user.absent();
    startOver();
}

void AvahiSession::changed(AvahiClient* changedClient, AvahiClientState state) {
    switch (state) {
    case AVAHI_CLIENT_S_RUNNING:
        user.up(changedClient);
        break;
    case AVAHI_CLIENT_S_COLLISION:
    case AVAHI_CLIENT_S_REGISTERING:
        user.pause();
        break;
    case AVAHI_CLIENT_FAILURE:
        // A failed client does not recover, and it must not be freed inside its own callback.
        renewAfter(avahi_client_errno(changedClient) == AVAHI_ERR_DISCONNECTED ? 0 : retryMilliseconds);
        break;
    case AVAHI_CLIENT_CONNECTING:
        user.absent();
        break;
    }
}

void AvahiSession::freeClient() {
    if (client == nullptr) return;
    avahi_client_free(std::exchange(client, nullptr));
    user.down();
}

} // namespace lumbrine
