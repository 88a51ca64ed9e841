#include "model/receiver_parts.h"

#include <utility>

namespace lumbrine {

ReceiverParts::ReceiverParts(const ReceiverPlatform& platform, Configuration configuration, Bilingual text,
                             std::function<void(const std::string&)> sink)
    : jobs(platform.runtime), log(jobs, state.published, text, std::move(sink)), drops(log),

      endpoint(jobs, state.published, platform.sockets, platform.advertiser, platform.system, configuration, log,
               platform.secrets),
      mirror(platform.runtime, state, endpoint), table(jobs, state, endpoint), meters(platform.runtime),

      surfaces(platform.runtime, state.published, platform.midi, log), desk(jobs, surfaces),
      queue(jobs, state, surfaces, drops), displays(platform.runtime),
      automation(jobs, state, log, {surfaces, desk, queue, displays, mirror, drops}),
      pan(jobs, state, log, surfaces, desk, queue, mirror),
      reconnection(jobs, state, log, platform.accessibility, surfaces), faderSweep(jobs, log, surfaces),

      scripting(jobs, state, log, platform), metadata(jobs, state, log, platform.accessibility, scripting, mirror),
      wishes(jobs, log, {endpoint, mirror, table, scripting, metadata}),

      bankMap(jobs, state, log, mirror, configuration.debug), capture(jobs, state, bankMap, displays),
      moves(platform.runtime, state, bankMap, desk, displays),
      walk(jobs, state, {queue, moves, bankMap, capture, mirror, drops}),
      calibration(jobs, state, log, {queue, moves, bankMap, capture, mirror, metadata}, configuration.debug),
      mender(jobs, state, log, {bankMap, capture, mirror, metadata, calibration}),
      seekWorker(jobs, state, {queue, moves, bankMap, capture, mirror, automation, drops}),
      visibleRange(jobs, state, log, {moves, walk, automation, mirror}),
      groups(jobs, state, log, {surfaces, moves, walk, capture, automation, mirror, table, drops}),

      switches(platform.runtime, state, log, mirror),
      feedback(jobs, state, log,
               {mirror, switches, bankMap, calibration, capture, metadata, meters, displays, automation, surfaces}),
      hello(jobs, state, log, {endpoint, mirror, table, calibration, automation}),
      fingers(jobs, state, surfaces, mirror),
      commands(jobs, state,
               {surfaces, mirror, hello, fingers, queue, pan, seekWorker, calibration, metadata, wishes, automation,
                groups, visibleRange, drops}),
      presence(jobs, state, log, {mirror, bankMap, pan, automation, surfaces}),
      position(platform.runtime, state, log, {bankMap, calibration, metadata}),
      owner(platform.runtime, state, text, endpoint, surfaces), refresh(state, {mirror, table, automation, metadata}),
      tick(jobs, state, {endpoint, meters, feedback, pan, presence, mender, position, owner, refresh, surfaces}) {}

} // namespace lumbrine
