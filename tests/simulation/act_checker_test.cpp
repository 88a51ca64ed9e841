// The checker of acts sees which track an act came to, and what its client had been shown.
#include "tests/simulation/act_checker.h"
#include "tests/simulation/testing/host_tracks.h"
#include "tests/simulation/testing/wire_actions.h"

namespace lumbrine::simulation {
namespace {

using testing::IsEmpty;
using testing::SizeIs;
using ActKind = HostAct::Kind;

// Strip 3 shows track 4, "Bass"; the phone has been told so and is the owner.
class Acts : public testing::Test {
protected:
    static constexpr int mutePort = 2;
    const Bytes touch3{0x01, 0x02, 0x03};
    const Bytes release3{0x01, 0x03, 0x03};
    const Bytes move3{0x01, 0x01, 0x03, 0x20, 0x00};
    const Bytes mute3{0x01, 0x04, 0x03};

    Acts() {
        evidence.sent.peers = {"phone"};
        show(0, 4, "Bass");
        for (const std::uint8_t strip : Bytes{0, 1, 2, 4, 5, 6, 7}) // have names, too
            tell(0.1, {0x01, 0x10, strip, 'E', 'l', 's', 'e'});
        tell(0.1, {0x01, 0x10, 0x03, 'B', 'a', 's', 's'});
        evidence.record.lists = {{at(0), {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}}};
        acceptance.changes = {{at(0), std::nullopt, "phone"}};
    }

    void show(double time, int track, const std::string& text) {
        evidence.record.shown.push_back({at(time), 3, track, text});
    }
    void bank(double time, std::optional<double> pressed) {
        evidence.record.banks.push_back({at(time), 8, pressed ? std::optional(at(*pressed)) : std::nullopt});
    }
    void tell(double time, Bytes bytes) { evidence.sent.list.push_back({at(time), 0, std::move(bytes)}); }
    void ask(double time, Bytes bytes, const std::string& from = "phone") {
        acceptance.accepted.push_back({at(time), from, std::move(bytes)});
    }
    // The host is a little late.
    void done(double sent, ActKind kind, int detail, int track, int strip = 3) {
        evidence.record.acts.push_back({at(sent), at(sent + 0.02), kind, strip, detail, track});
    }
    void job(double begin, double end, Job kind = Job::scan) {
        JobRun run;
        run.job = kind;
        run.before = at(begin);
        run.after = at(end);
        evidence.jobs.runs.push_back(run);
    }
    Requests requests() {
        acceptance.numbers.assign(acceptance.accepted.size(), 0);
        return requestsIn(acceptance);
    }
    ActViolations check() {
        const ShownTracks shown(evidence.sent, evidence.record, evidence.jobs.runs);
        return checkActs(evidence, shown, acceptance, requests());
    }

    Evidence evidence;
    Acceptance acceptance;
};

TEST_F(Acts, OnTheTrackThatWasShownAreRight) {
    ask(1, touch3);
    ask(1, move3);
    ask(1.1, mute3);
    done(1, ActKind::touch, 0, 4);
    done(1, ActKind::move, 8192, 4);
    done(1.1, ActKind::press, mutePort, 4);
    EXPECT_THAT(check().wrongTracks, IsEmpty());
}

TEST_F(Acts, OnNoTrackAreRight) {
    ask(1, mute3);
    done(1, ActKind::press, mutePort, 0);
    EXPECT_THAT(check().wrongTracks, IsEmpty());
}

TEST_F(Acts, OnATrackThatASeekBroughtThereAreWrong) {
    ask(1, mute3);
    job(0.9, 2);
    bank(1.01, 0.99); // the bank button was sent before the press
    show(1.01, 12, "Vox");
    done(1, ActKind::press, mutePort, 12);
    EXPECT_THAT(check().wrongTracks, SizeIs(1));
}

TEST_F(Acts, OnATrackThatTheHostsUserPutThereMeanwhileAreNobodysFault) {
    ask(1, mute3);
    bank(1.01, std::nullopt);
    show(1.01, 12, "Vox");
    done(1, ActKind::press, mutePort, 12);
    EXPECT_THAT(check().wrongTracks, IsEmpty());
}

TEST_F(Acts, OnATrackThatNobodyCouldReadWhileTheThreadsStoodStillAreNobodysFault) {
    bank(0.5, std::nullopt);
    show(0.5, 12, "Vox");
    ask(1, mute3);
    done(1, ActKind::press, mutePort, 12);
    evidence.pauses = {{at(0.4), at(1.1)}};
    EXPECT_THAT(check().wrongTracks, IsEmpty());
    evidence.pauses = {{at(0.6), at(1.1)}};
    EXPECT_THAT(check().wrongTracks, SizeIs(1));
}

TEST_F(Acts, OnATrackThatTheHostHadShownBeforeAreWrong) {
    bank(0.5, std::nullopt);
    show(0.5, 12, "Vox"); // and nobody told the client
    ask(1, mute3);
    done(1, ActKind::press, mutePort, 12);
    EXPECT_THAT(check().wrongTracks, SizeIs(1));
}

TEST_F(Acts, OfOneNameMayBeOnEitherTrackUnlessAJobMovedTheBanks) {
    show(0.5, 12, "Bass");
    ask(1, mute3);
    done(1, ActKind::press, mutePort, 12);
    EXPECT_THAT(check().wrongTracks, IsEmpty());

    job(0.3, 0.7);
    bank(0.5, 0.48);
    EXPECT_THAT(check().wrongTracks, SizeIs(1));
}

TEST_F(Acts, OfOneNameAreForWhatATapBringsWhereNobodyKnowsWhereItLeads) {
    job(0.3, 0.7, Job::tap);
    bank(0.5, 0.48);
    show(0.5, 12, "Bass");
    ask(1, mute3);
    done(1, ActKind::press, mutePort, 12);
    EXPECT_THAT(check().wrongTracks, IsEmpty());

    acceptance.accepted[0].at = at(0.49); // when the button was on its way
    evidence.record.acts[0].sent = at(0.49);
    EXPECT_THAT(check().wrongTracks, SizeIs(1));
}

TEST_F(Acts, UnderAFingerStayWithTheTrackItWasPutOn) {
    ask(1, touch3);
    show(2, 12, "Vox");
    tell(2, {0x01, 0x10, 0x03, 'V', 'o', 'x', ' '});
    ask(3, move3);
    done(1, ActKind::touch, 0, 4);
    done(3, ActKind::move, 8192, 12);
    EXPECT_THAT(check().wrongTracks, SizeIs(1));

    acceptance.accepted.insert(acceptance.accepted.begin() + 1, {at(2.5), "phone", release3});
    EXPECT_THAT(check().wrongTracks, IsEmpty());
}

TEST_F(Acts, MayWaitForTheirTrackAndFollowIt) {
    ask(1, mute3);
    evidence.record.shown.push_back({at(1.5), 5, 4, "Bass"});
    done(1.6, ActKind::press, mutePort, 4, 5);
    EXPECT_THAT(check().wrongTracks, IsEmpty());
    evidence.record.acts[0].sent = at(3.1);
    EXPECT_THAT(check().wrongTracks, SizeIs(1));
}

TEST_F(Acts, HappenOnceForEachDatagram) {
    ask(1, mute3);
    done(1, ActKind::press, mutePort, 4);
    done(1, ActKind::press, mutePort, 4);
    EXPECT_THAT(check().wrongTracks, SizeIs(1));
}

TEST_F(Acts, OfAModeAndAPanSeekCountToo) {
    ask(1, {0x01, 0x0F, 0x03, 0x04});
    ask(2, {0x01, 0x09, 0x03, 0x07});
    done(1.2, ActKind::mode, 4, 4);
    done(2, ActKind::turn, 1, 4);
    done(3, ActKind::turn, -1, 4);
    EXPECT_THAT(check().wrongTracks, IsEmpty());
    show(1.25, 12, "Vox");
    done(1.3, ActKind::mode, 4, 12);
    done(3.1, ActKind::turn, 1, 12);
    EXPECT_THAT(check().wrongTracks, SizeIs(2));
}

Bytes sessionRow(std::uint8_t index, char name) {
    return {0x01, 0x1B, 0x00, index, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, static_cast<std::uint8_t>(name), 0};
}

TEST_F(Acts, OfAWalkMayStandStillBetweenTouchAndMove) {
    evidence.record.states = {{at(0), trackCalled("J", 10)}};
    tell(0.2, sessionRow(9, 'J'));
    ask(1, {0x01, 0x23, 0x01, 0x00, 0x09, 0x20, 0x00});
    done(4, ActKind::touch, 0, 10, 1);
    done(4.25, ActKind::move, 8192, 10, 1);
    EXPECT_THAT(check().wrongTracks, SizeIs(1));
    evidence.pauses = {{at(4), at(4.25)}};
    EXPECT_THAT(check().wrongTracks, IsEmpty());
}

TEST_F(Acts, OfAWalkThatEndsBetweenTouchAndMoveAreOnTheTracksOfItsRowsToo) {
    evidence.record.states = {{at(0), trackCalled("J", 10)}};
    tell(0.2, sessionRow(9, 'J'));
    ask(1, {0x01, 0x23, 0x01, 0x00, 0x09, 0x20, 0x00});
    job(2, 5, Job::walk);
    done(4, ActKind::touch, 0, 10, 1);
    EXPECT_THAT(check().wrongTracks, IsEmpty());
    done(4.5, ActKind::touch, 0, 11, 1);
    EXPECT_THAT(check().wrongTracks, SizeIs(1));
    done(6, ActKind::touch, 0, 10, 1); // after the walk
    EXPECT_THAT(check().wrongTracks, SizeIs(2));
}

TEST_F(Acts, OfAWalkAreOnTheTracksOfItsRows) {
    evidence.record.states = {{at(0), trackCalled("J", 10)}, {at(0), trackCalled("K", 11)}};
    tell(0.2, sessionRow(9, 'J'));
    ask(1, {0x01, 0x23, 0x01, 0x00, 0x09, 0x20, 0x00});
    done(4, ActKind::touch, 0, 10, 1);
    done(4, ActKind::turn, 1, 0, 2); // of another strip, meanwhile
    done(4, ActKind::move, 8192, 10, 1);
    EXPECT_THAT(check().wrongTracks, IsEmpty());
    done(5, ActKind::touch, 0, 11, 1);
    done(5, ActKind::move, 8192, 11, 1);
    EXPECT_THAT(check().wrongTracks, SizeIs(1));
}

TEST_F(Acts, OfNewcomersAreToldApart) {
    acceptance.changes.push_back({at(1), "phone", "other"});
    ask(1, mute3, "other");
    job(0.9, 2);
    bank(1.01, 0.99);
    show(1.01, 12, "Vox");
    done(1, ActKind::press, mutePort, 12);
    const ActViolations found = check();
    EXPECT_THAT(found.wrongTracks, IsEmpty());
    EXPECT_THAT(found.ofNewcomers, SizeIs(1));
}

TEST_F(Acts, OfAClientThatWasToldNothingAreForWhatIsThere) {
    acceptance.changes.push_back({at(1), "phone", "other"});
    show(1.5, 12, "Vox");
    ask(2, touch3, "other");
    ask(2, mute3, "other");
    tell(2.5, {0x01, 0x10, 0x03, 'V', 'o', 'x', ' '});
    ask(3, move3, "other");
    done(2, ActKind::touch, 0, 12);
    done(2, ActKind::press, mutePort, 12);
    done(3, ActKind::move, 8192, 12);
    EXPECT_THAT(check().ofNewcomers, IsEmpty());
    EXPECT_THAT(check().wrongTracks, IsEmpty());
}

TEST_F(Acts, OfAFormerOwnerAreForWhatItWasTold) {
    show(1.5, 12, "Vox");
    acceptance.changes.push_back({at(1), "phone", "other"});
    acceptance.changes.push_back({at(2), "other", "phone"});
    ask(2, mute3);
    done(2, ActKind::press, mutePort, 12);
    EXPECT_THAT(check().ofNewcomers, SizeIs(1));
}

} // namespace
} // namespace lumbrine::simulation
