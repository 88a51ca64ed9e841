// The parts that a ReceiverModel is made of, in the order in which they build on each other.
#pragma once

#include "model/hands/reconnection.h"
#include "model/hands/test_sweep.h"
#include "model/mirror/meter_step.h"
#include "model/reactions/client_commands.h"
#include "model/reactions/periodic_tick.h"
#include "model/reactions/surface_feedback.h"
#include "model/state/configuration.h"
#include "model/state/receiver_platform.h"

namespace lumbrine {

struct ReceiverParts {
    ReceiverParts(const ReceiverPlatform& platform, Configuration configuration, Bilingual text,
                  std::function<void(const std::string&)> sink);

    Jobs jobs;
    ReceiverState state;
    ActivityLog log;

    Surfaces surfaces;
    ClientEndpoint endpoint;
    ClientMirror mirror;

    MeterBank meters;
    NameClock nameClock;
    ProbeExchange probe;
    BankMap bankMap;
    SessionCapture capture;
    TrackTable table;

    ScriptingLink scripting;
    TrackAdoption adoption;
    TrackMetadata metadata;
    AutomationModes automation;
    PanMode panMode;
    PanSeeker panSeeker;

    SurfaceMoves moves;
    SurfaceWalk walk;
    Calibration calibration;
    SeekWorker seekWorker;
    BankMoves bankMoves;
    VisibleRangeWalk visibleRange;
    GroupOperations groups;
    GroupMuteSolo groupSwitches;
    Reconnection reconnection;
    TestSweep testSweep;

    SwitchTracker switches;
    SurfaceFeedback feedback;
    HelloResponse hello;
    ClientCommands commands;

    PresenceWatch presence;
    PositionWatch position;
    OwnerWatch owner;
    ClientRefresh refresh;
    PeriodicTick tick;
    MeterStep meterStep;
};

} // namespace lumbrine
