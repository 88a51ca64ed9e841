// The parts that a ReceiverModel is made of, in the order in which they build on each other.
#pragma once

#include "model/hands/fader_sweep.h"
#include "model/hands/reconnection.h"
#include "model/reactions/client_commands.h"
#include "model/reactions/periodic_tick.h"
#include "model/reactions/surface_feedback.h"
#include "model/state/configuration.h"
#include "model/state/receiver_platform.h"

namespace lumbrine {

struct ReceiverParts {
    ReceiverParts(const ReceiverPlatform& platform, Configuration configuration, Bilingual text,
                  std::function<void(const std::string&)> sink);

    // state/
    Jobs jobs;
    ReceiverState state;
    ActivityLog log;
    DroppedCommands drops;

    // mirror/
    ClientEndpoint endpoint;
    ClientMirror mirror;
    TrackTable table;
    Meters meters;

    // hands/
    Surfaces surfaces;
    SurfaceDesk desk;
    DeskQueue queue;
    DisplayWatch displays;
    AutomationModes automation;
    Pan pan;
    Reconnection reconnection;
    FaderSweep faderSweep;

    // tracks/
    ScriptingLink scripting;
    TrackMetadata metadata;
    TrackWishes wishes;

    // bank/
    BankMap bankMap;
    TrackCapture capture;
    SurfaceMoves moves;
    SurfaceWalk walk;
    Calibration calibration;
    MapMender mender;
    SeekWorker seekWorker;
    VisibleRangeWalk visibleRange;
    GroupOperations groups;

    // reactions/
    SwitchTracker switches;
    SurfaceFeedback feedback;
    HelloResponse hello;
    Fingers fingers;
    ClientCommands commands;
    PresenceWatch presence;
    PositionWatch position;
    OwnerWatch owner;
    ClientRefresh refresh;
    PeriodicTick tick;
};

} // namespace lumbrine
