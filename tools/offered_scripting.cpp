#include "tools/offered_scripting.h"

#include "simulator/wire/fault_filter.h"

#include <memory>
#include <utility>

namespace lumbrine {

namespace {

class FaultyConnection final : public RelayedConnection {
public:
    explicit FaultyConnection(WireFaults& faults) : filter([&faults] { return faults.draw(); }) {}

    Passed fromClient(ByteView bytes) override { return {.toService = filter.fromClient(bytes)}; }

    Passed fromService(ByteView bytes) override {
        wire::FaultFilter::Passed passed = filter.fromService(bytes);
        return {std::move(passed.toClient), std::move(passed.toService), endOf(passed.end)};
    }

private:
    static End endOf(wire::FaultFilter::End end) {
        switch (end) {
        case wire::FaultFilter::End::none:
            return End::none;
        case wire::FaultFilter::End::finish:
            return End::finish;
        case wire::FaultFilter::End::die:
            return End::die;
        }
        return End::none;
    }

    wire::FaultFilter filter;
};

} // namespace

OfferedScripting::OfferedScripting(Runtime& runtime, SimulatedScripting& scripting, std::uint16_t wantedPort)
    : scripting(scripting), wantedPort(wantedPort),
      server(runtime, scripting, needFaultyWire(scripting.wireFaults().options) ? std::uint16_t{0} : wantedPort) {
    WireFaults& faults = scripting.wireFaults();
    if (needFaultyWire(faults.options) && server.port()) {
        relay.emplace(runtime, RelaySetup{.port = wantedPort,
                                          .service = *server.port(),
                                          .downTime = faults.options.downTime,
                                          .bytesAtOnce = faults.options.bytesAtOnce,
                                          .connected = [&faults] { return std::make_unique<FaultyConnection>(faults); },
                                          .died = [&scripting] { scripting.restart(); }});
        faults.use();
    }
    if (port()) scripting.offeredOn(port());
}

OfferedScripting::~OfferedScripting() {
    if (port()) scripting.offeredOn(std::nullopt);
}

std::optional<std::uint16_t> OfferedScripting::port() const {
    return relay ? relay->port() : server.port();
}

std::string OfferedScripting::line(const Bilingual& text) const {
    if (const auto offered = port())
        return text("Scripting service on 127.0.0.1:", "公式 API: 127.0.0.1:") + std::to_string(*offered);
    const std::string taken = std::to_string(wantedPort);
    return text("Port " + taken + " is taken: there is no scripting service",
                "ポート " + taken + " は使用中のため、公式 API は提供されません");
}

std::uint16_t portForReceiver(const OfferedScripting* offered) {
    return offered != nullptr ? offered->port().value_or(0) : 0;
}

} // namespace lumbrine
