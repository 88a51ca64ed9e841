#include "model/receiver_parts.h"

#include <utility>

namespace lumbrine {

ReceiverParts::ReceiverParts(const ReceiverPlatform& platform, Configuration configuration, Bilingual text,
                             std::function<void(const std::string&)> sink)
    : jobs(platform.runtime), log(jobs, state.published, text, std::move(sink)),

      endpoint(platform.runtime, platform.sockets, platform.advertiser, platform.system, configuration, log),
      mirror(platform.runtime, state, endpoint), table(jobs, state, endpoint), meters(platform.runtime),

      surfaces(platform.runtime, platform.midi, log), desk(jobs, state, surfaces), displays(platform.runtime),
      automation(jobs, state, log, desk, displays, mirror), pan(jobs, state, log, surfaces, mirror),
      reconnection(jobs, state, log, platform.accessibility, surfaces), faderSweep(jobs, log, surfaces),

      scripting(jobs, state, log, platform), metadata(jobs, state, log, platform.accessibility, scripting, mirror),
      wishes(jobs, log, {endpoint, mirror, table, scripting, metadata}),

      bankMap(state, log, mirror, configuration.debug), moves(platform.runtime, state, bankMap, desk, displays),
      walk(jobs, state, desk, moves, bankMap, mirror),
      calibration(jobs, state, log, {desk, moves, bankMap, mirror, metadata}),
      seekWorker(jobs, state, {desk, moves, bankMap, mirror, automation}),
      visibleRange(jobs, state, log, {moves, walk, automation, mirror}),
      groups(jobs, state, log, {surfaces, moves, walk, automation, mirror}),

      switches(platform.runtime, state, log, mirror),
      feedback(jobs, state, log, {mirror, switches, bankMap, metadata, meters, displays}),
      hello(jobs, state, log, {endpoint, mirror, table, calibration, automation}),
      commands(jobs, state,
               {surfaces, mirror, hello, desk, pan, seekWorker, calibration, metadata, wishes, automation, groups,
                visibleRange}),
      presence(jobs, state, log, {desk, mirror, bankMap, pan}),
      position(platform.runtime, state, log, {bankMap, calibration}), owner(state, text, endpoint, surfaces),
      refresh(state, {mirror, table, automation, metadata}),
      tick(jobs, state, {endpoint, meters, feedback, presence, position, owner, refresh, surfaces}) {}

} // namespace lumbrine
