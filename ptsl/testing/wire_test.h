// For tests of the wire: one wire in virtual time, and a service that answers as the test decides.
#pragma once

#include "ptsl/ptsl_wire.h"
#include "ptsl/testing/scripted_service.h"
#include "ptsl/testing/service_frames.h"

namespace lumbrine {

class WireTest : public testing::Test {
protected:
    using Call = service::ScriptedService::Call;
    static constexpr const char* path = "/ptsl.PTSL/SendGrpcRequest";

    WireTest() {
        scripted.answer = [](Call& got) { got.line.send(service::response(got.stream, {0xCA, 0xFE})); };
    }

    std::expected<Bytes, PTSLError> call(const Bytes& message = {1}) { return wire.call(path, message); }

    PTSLError errorOfCall(const Bytes& message = {1}) {
        const auto result = call(message);
        EXPECT_FALSE(result);
        return result ? PTSLError::commandFailed("no error") : result.error();
    }

    Duration now() const { return runtime.now().time_since_epoch(); }

    VirtualRuntime runtime;
    VirtualStreams streams{runtime};
    service::ScriptedService scripted{streams};
    PTSLWire wire{runtime, streams, Bilingual(false), "127.0.0.1", service::ScriptedService::port, 3.0};
    PTSLWire japaneseWire{runtime, streams, Bilingual(true), "127.0.0.1", service::ScriptedService::port, 3.0};
};

} // namespace lumbrine
