#include "model/receiver_parts.h"

#include <utility>

namespace lumbrine {

ReceiverParts::ReceiverParts(const ReceiverPlatform& platform, Configuration configuration, Bilingual text,
                             std::function<void(const std::string&)> sink)
    : jobs(platform.runtime), log(jobs, state.published, std::move(sink)),
      surfaces(platform.runtime, platform.midi, text, log),
      endpoint(platform.runtime, platform.sockets, platform.advertiser, platform.system, configuration, text, log),
      mirror(platform.runtime, state, endpoint), meters(platform.runtime), nameClock(platform.runtime),
      probe(platform.runtime), bankMap(platform.runtime, state, mirror, log, configuration.debug),
      capture(platform.runtime, state), table(jobs, state, endpoint), scripting(jobs, state, platform, log, text),
      adoption(state, mirror, log, text), metadata(jobs, state, platform.accessibility, scripting, adoption),
      automation(jobs, state, surfaces, mirror, probe, log, text), panMode(platform.runtime, state, mirror, log, text),
      panSeeker(jobs, state, surfaces), moves(platform.runtime, state, bankMap, nameClock, surfaces),
      walk(jobs, state, moves, bankMap, mirror),
      calibration(jobs, state, {moves, bankMap, mirror, capture, metadata, log}, text),
      seekWorker(jobs, state, {moves, bankMap, mirror, automation}),
      bankMoves(jobs, state, surfaces, bankMap, seekWorker),
      visibleRange(jobs, state, {moves, walk, automation, capture, mirror, log}, text),
      groups(jobs, state, {surfaces, moves, walk, automation, capture, mirror, log}, text),
      groupSwitches(jobs, state, scripting, metadata, log, text),
      reconnection(jobs, state, platform.accessibility, surfaces, log, text), testSweep(jobs, surfaces, log, text),
      switches(platform.runtime, state, mirror, log),
      feedback(jobs, state, {log, mirror, switches, capture, bankMap, meters, nameClock, probe}),
      hello(platform.runtime, state, {endpoint, mirror, table, calibration, automation, log}, text),
      commands(jobs, state,
               {surfaces, mirror, hello, panMode, panSeeker, bankMoves, seekWorker, calibration, metadata, automation,
                groups, groupSwitches, visibleRange}),
      presence(jobs, state, {surfaces, mirror, bankMap, panMode, log}, text),
      position(platform.runtime, state, {bankMap, calibration, log}, text), owner(state, endpoint, surfaces, text),
      refresh(state, {mirror, table, automation, metadata}), tick(jobs, state, {presence, position, owner, refresh}),
      meterStep(jobs, state, meters, endpoint) {}

} // namespace lumbrine
