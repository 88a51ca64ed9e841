#include "remote/remote_program.h"

#include "remote/message_line.h"

#include <utility>

namespace lumbrine::remote {
namespace {

constexpr const char* serviceType = "_lumbrine._udp.";

std::string textOf(const HostAndPort& receiver) {
    const bool v6 = receiver.host.find(':') != std::string::npos;
    return (v6 ? "[" + receiver.host + "]" : receiver.host) + ":" + std::to_string(receiver.port);
}

} // namespace

RemoteProgram::RemoteProgram(RemoteSurroundings given, RemoteArguments what)
    : surroundings(std::move(given)), arguments(std::move(what)),
      client(surroundings.runtime, surroundings.sockets,
             {.token = arguments.token, .key = arguments.key, .secrets = surroundings.secrets}) {
    client.onMessage = [this](const ReceiverMessage& message) {
        if (!arguments.plain()) return;
        hear(lineOf(message));
        if (std::holds_alternative<Pong>(message)) hearLoss();
    };
    client.onState = [this](LinkState state) {
        if (arguments.plain()) hear(lineOf(state));
        if (state == LinkState::busy && arguments.takeOver && !std::exchange(tookOver, true)) client.takeOver();
    };
}

RemoteProgram::~RemoteProgram() = default;

void RemoteProgram::start() {
    if (!arguments.script.steps.empty()) {
        runner.emplace(surroundings.runtime, arguments.script, surroundings.text,
                       [this](const Bytes& datagram) { client.send(datagram); });
        runner->onEnd = [this](const std::string& failure) {
            if (!failure.empty()) surroundings.complain(failure);
            surroundings.end(failure.empty() ? 0 : 1);
        };
        runner->start();
    } else if (arguments.plain()) {
        endWithoutAnswer();
    } else if (surroundings.terminal != nullptr) {
        view.emplace(surroundings.runtime, client, *surroundings.terminal, surroundings.text,
                     [this] { surroundings.end(0); });
    }
    if (arguments.receiver) {
        connectTo(*arguments.receiver, textOf(*arguments.receiver));
    } else {
        search();
    }
}

void RemoteProgram::search() {
    serviceSearch =
        surroundings.browser.browse(serviceType, [this, program = std::weak_ptr(alive)](const FoundService& service) {
            surroundings.runtime.postMain([this, program, service] {
                if (program.expired() || std::exchange(found, true)) return;
                const HostAndPort receiver{service.host, service.port};
                connectTo(receiver, service.name + " (" + textOf(receiver) + ")");
            });
        });
    if (!serviceSearch)
        fail(surroundings.text("nothing on this computer can look for receivers; name one as host:port",
                               "このコンピュータではレシーバーを検索できません。host:port の形で指定してください"));
}

void RemoteProgram::connectTo(const HostAndPort& receiver, const std::string& shownAs) {
    if (!client.connect(receiver.host, receiver.port))
        return fail(surroundings.text("no way to ", "接続できません: ") + textOf(receiver));
    if (view) view->setReceiver(shownAs);
}

void RemoteProgram::hear(const std::string& line) {
    if (arguments.watch) surroundings.print(line);
    if (runner) runner->hear(line);
}

void RemoteProgram::hearLoss() {
    const auto loss = client.loss();
    if (loss) hear("sealed received=" + std::to_string(loss->received) + " lost=" + std::to_string(loss->lost));
}

// For a watch. A script's runner notices by itself, and the view shows that it is searching.
void RemoteProgram::endWithoutAnswer() {
    const Duration timeout = arguments.script.timeout;
    surroundings.runtime.postMainAfter(timeout, [this, timeout, program = std::weak_ptr(alive)] {
        if (!program.expired() && client.state() == LinkState::searching) fail(noAnswer(timeout, surroundings.text));
    });
}

void RemoteProgram::fail(const std::string& why) {
    surroundings.complain(why);
    surroundings.end(1);
}

} // namespace lumbrine::remote
