#include "benchmarks/session_receiver.h"

#include "model/testing/session_columns.h"
#include "platform/posix/posix_datagram_sockets.h"

#include <thread>

namespace lumbrine {

namespace {

constexpr std::uint16_t receiverPort = 52814;
const std::thread::id mainThread = std::this_thread::get_id();

} // namespace

void HandDrivenLoop::drain() {
    for (; !jobs.empty(); jobs.pop_front())
        jobs.front()();
}

bool HandDrivenLoop::onMain() const {
    return std::this_thread::get_id() == mainThread;
}

// The system's sockets. While `tape` is set, everything sent is also recorded there.
class SessionReceiver::Sockets final : public PosixDatagramSockets {
public:
    int send(int fd, ByteView bytes, const PeerAddress& to) override {
        if (tape != nullptr) tape->emplace_back(bytes.begin(), bytes.end());
        return PosixDatagramSockets::send(fd, bytes, to);
    }

    std::vector<Bytes>* tape = nullptr;
};

Session detailedSession(const std::vector<std::string>& names) {
    Session session;
    for (const std::string& name : names)
        session.tracks.push_back({.display = name,
                                  .name = "Track with a name of its own, " + name,
                                  .color = 0x8040C0,
                                  .mute = true,
                                  .solo = true,
                                  .record = true,
                                  .inputMonitor = true,
                                  .select = true,
                                  .fader = 0.5,
                                  .pan = std::nullopt,
                                  .comment = "A comment of an ordinary length, 日本語も"});
    session.listed = true;
    session.surveyed = true;
    return session;
}

SessionReceiver::SessionReceiver(const std::vector<std::string>& names)
    : runtime(loop), sockets(std::make_unique<Sockets>()),
      system({{"QV_PORT", std::to_string(receiverPort)}, {"QV_NO_BONJOUR", "1"}}), phone(sockets->open()),
      parts({runtime, midi, *sockets, advertiser, system, streams, json, accessibility}, Configuration::read(system),
            Bilingual(false), [](const std::string&) {}) {
    PublishedState& published = parts.state.published;
    published.winW = stripCount;
    published.iosClientDesc = "a phone";
    published.session = detailedSession(names);
    for (StripState& strip : published.strips)
        strip.mode = 1;
    parts.jobs.bind(life);
    showFrom(0);

    parts.endpoint.startUDPAndBonjour([](ByteView, const Sender&) {});
    PeerAddress receiver;
    sockets->setDualStack(phone);
    sockets->bind(phone, 0);
    sockets->resolve("127.0.0.1", static_cast<std::uint16_t>(sockets->localPort(phone)), phoneAddress);
    sockets->resolve("127.0.0.1", receiverPort, receiver);
    sockets->send(phone, Bytes{0x01, 0x00}, receiver);
    while (phoneKey.empty()) {
        std::this_thread::yield();
        phoneKey = parts.endpoint.liveOwnerKey().value_or("");
    }
}

SessionReceiver::~SessionReceiver() {
    runtime.shutDown();
    parts.endpoint.close();
    sockets->close(phone);
}

void SessionReceiver::showFrom(std::size_t track) {
    const std::vector<Track>& tracks = parts.state.published.session.tracks;
    for (int strip = 0; strip < stripCount; ++strip) {
        const std::size_t shown = track + static_cast<std::size_t>(strip);
        parts.feedback.trackNameShown(*Strip::of(strip), shown < tracks.size() ? tracks[shown].display : "");
    }
}

void SessionReceiver::answerHello() {
    parts.hello.followUp();
    loop.drain();
}

void SessionReceiver::resendTable() {
    parts.table.sendAllRowsTo(phoneKey, [] {});
    loop.drain();
}

std::vector<Bytes> SessionReceiver::sentBy(const std::function<void()>& act) {
    std::vector<Bytes> sent;
    sockets->tape = &sent;
    act();
    sockets->tape = nullptr;
    return sent;
}

void SessionReceiver::sendBare(const std::vector<Bytes>& datagrams) {
    for (const Bytes& datagram : datagrams)
        sockets->send(phone, datagram, phoneAddress);
}

} // namespace lumbrine
