// What the diagnosis says of each link, and what it tells the user to do; fed by whole models in virtual time.
#include "app/diagnosis.h"
#include "model/testing/model_test.h"

namespace lumbrine {
namespace {

using testing::AllOf;
using testing::Field;
using testing::HasSubstr;

constexpr Bilingual en(false);
constexpr Bilingual ja(true);

Check checkOf(const PublishedState& published, std::string_view id, HostSystem system = HostSystem::linuxDesktop) {
    for (const Check& check : diagnosis(published, system, en))
        if (check.id == id) return check;
    ADD_FAILURE() << "no check " << id;
    return {};
}

class DiagnosisTest : public ModelTest {
protected:
    Check check(std::string_view id) { return checkOf(bench.model->published(), id); }
    CheckState state(std::string_view id) { return check(id).state; }
};

TEST_F(DiagnosisTest, FindsTheReceiverReadyOnceItHasStarted) {
    bench.start();
    EXPECT_EQ(check("port").sentence, "UDP port 52700 is open.");
    EXPECT_EQ(check("address").sentence, "A phone reaches this computer at 192.168.1.2, port 52700.");
    EXPECT_EQ(state("midi"), CheckState::fine);
    EXPECT_EQ(state("announcement"), CheckState::waiting);
    EXPECT_EQ(state("phone"), CheckState::waiting);
    EXPECT_FALSE(isAnyWrong(diagnosis(bench.model->published(), HostSystem::linuxDesktop, en)));
}

TEST_F(DiagnosisTest, FindsThePortThatAnotherProgramHas) {
    DatagramSockets& sockets = world.network.host("192.168.1.2");
    const int other = sockets.open();
    ASSERT_GE(sockets.bind(other, 52700), 0);
    bench.start();
    EXPECT_EQ(state("port"), CheckState::wrong);
    EXPECT_THAT(check("port").sentence, HasSubstr("52700 could not be opened (bind: "));
    EXPECT_EQ(state("phone"), CheckState::unknown);
    sockets.close(other);
}

TEST(Diagnosis, NamesAFunctionOfTheMacOnTheMacAlone) {
    PublishedState published;
    published.health.midi = {.state = LinkHealth::State::down, .detail = "MIDIClientCreateWithBlock failed: -19"};
    EXPECT_EQ(checkOf(published, "midi").sentence, "The MIDI ports are missing: Pro Tools cannot be reached.");
    EXPECT_THAT(checkOf(published, "midi", HostSystem::mac).sentence, HasSubstr("(MIDIClientCreateWithBlock failed"));
}

TEST_F(DiagnosisTest, FollowsTheAnnouncement) {
    bench.start();
    const AdvertisedService& service = bench.computer.services.at(0);
    service.onChange("Studio #2");
    EXPECT_EQ(check("announcement").sentence, "Phones find this computer as “Studio #2”.");
    service.onChange({});
    EXPECT_THAT(check("announcement"), AllOf(Field(&Check::state, CheckState::wrong),
                                             Field(&Check::remedy, HasSubstr("Start the service avahi-daemon"))));
}

TEST_F(DiagnosisTest, SaysHowToSetUpProToolsUntilItIsHeard) {
    bench.start();
    EXPECT_EQ(state("surface-a"), CheckState::waiting);
    EXPECT_THAT(check("surface-b").remedy, HasSubstr("Type = HUI, Receive From = Lumbrine B, Send To = Lumbrine B"));
    bench.surfaceA.pingEverySecond();
    bench.surfaceB.pingEverySecond();
    bench.run(3s);
    EXPECT_EQ(state("surface-a"), CheckState::fine);
    EXPECT_EQ(state("surface-b"), CheckState::fine);
}

TEST_F(DiagnosisTest, KnowsWhetherAProgramHasTakenThePorts) {
    bench.start();
    EXPECT_EQ(state("connections"), CheckState::unknown);
    bench.midi.connected = false;
    bench.run(1s);
    EXPECT_EQ(check("connections").sentence, "No program is connected to both ports “Lumbrine”.");
    bench.midi.connected = true;
    bench.run(1s);
    EXPECT_EQ(check("connections").sentence, "A program is connected to “Lumbrine” and “Lumbrine B”.");
}

TEST_F(DiagnosisTest, KnowsWhetherTheFadersFollow) {
    bench.start();
    bench.surfaceA.pingEverySecond();
    bench.surfaceA.fader(2, 0.25);
    bench.run(1s);
    EXPECT_EQ(check("faders").sentence, "No phone has moved a fader yet.");
    const auto phone = bench.phone("192.168.1.7");
    phone->send({0x01, 0x01, 0x02, 0x20, 0x00});
    bench.run(1s);
    EXPECT_EQ(state("faders"), CheckState::unknown);
    bench.run(1s);
    EXPECT_EQ(check("faders").sentence, "Pro Tools' fader did not follow the last move.");
    phone->send({0x01, 0x01, 0x02, 0x30, 0x00});
    bench.surfaceA.fader(2, 0.75);
    bench.run(1s);
    EXPECT_EQ(state("faders"), CheckState::fine);
}

TEST_F(DiagnosisTest, FindsProToolsGoneWithinThreeSeconds) {
    bench.start();
    bench.surfaceA.pingEverySecond();
    bench.run(3s);
    bench.surfaceA.stopPinging();
    bench.run(3s);
    EXPECT_THAT(check("surface-a"), AllOf(Field(&Check::state, CheckState::wrong),
                                          Field(&Check::remedy, HasSubstr("press “Reconnect to PT”"))));
}

TEST_F(DiagnosisTest, KnowsThePhoneThatFellSilent) {
    bench.start();
    const auto phone = bench.phone("192.168.1.7");
    phone->send({0x01, 0x07, 0x00, 0x00});
    bench.run(1s);
    EXPECT_EQ(check("phone").sentence, "192.168.1.7 is connected.");
    bench.run(6s);
    EXPECT_THAT(check("phone"), AllOf(Field(&Check::state, CheckState::waiting),
                                      Field(&Check::sentence, "192.168.1.7 was connected and is silent now.")));
}

TEST_F(DiagnosisTest, NamesTheBrowserAsAClientWhereThereIsTheGatewayForIt) {
    bench.start();
    const PublishedState& published = bench.model->published();
    EXPECT_THAT(checkOf(published, "phone").remedy, HasSubstr("lumbrine-web shows its address"));
    EXPECT_THAT(checkOf(published, "phone", HostSystem::mac).remedy, testing::Not(HasSubstr("lumbrine-web")));
}

TEST_F(DiagnosisTest, KnowsWhetherTheTracksAreMapped) {
    bench.start();
    EXPECT_EQ(state("map"), CheckState::unknown);
    bench.state().published.huiConnected = true;
    EXPECT_EQ(state("map"), CheckState::waiting);
    bench.setTrackMap({"Kick", "Snar"}, 0);
    EXPECT_EQ(check("map").sentence, "2 tracks are mapped, without those that Pro Tools hides.");
    bench.state().published.bankOffset = -1;
    EXPECT_EQ(state("map"), CheckState::waiting);
}

TEST(Diagnosis, MissesTheScriptingServiceOnlyBesideProToolsAndCallsItNoFault) {
    PublishedState published;
    published.health.scripting = {.state = LinkHealth::State::down, .detail = "not running"};
    EXPECT_EQ(checkOf(published, "scripting").state, CheckState::unknown);
    published.huiConnected = true;
    EXPECT_EQ(checkOf(published, "scripting").sentence, "Full names and colours are missing: not running.");
    EXPECT_EQ(checkOf(published, "scripting").state, CheckState::waiting);
}

TEST(Diagnosis, SaysWhatTheNetworkLost) {
    PublishedState published;
    published.iosConnected = true;
    published.health.loss = {.received = 100, .lost = 0};
    EXPECT_THAT(checkOf(published, "phone").sentence, testing::Not(HasSubstr("lost")));
    published.health.loss = {.received = 1188, .lost = 12};
    EXPECT_THAT(checkOf(published, "phone").sentence, testing::EndsWith(" The network lost 12 of its 1200 datagrams."));
    published.iosConnected = false;
    EXPECT_THAT(checkOf(published, "phone").sentence, testing::Not(HasSubstr("lost")));
}

TEST(Diagnosis, CountsTheClientsWithoutAKey) {
    PublishedState published;
    published.health.strangers = 1;
    EXPECT_THAT(checkOf(published, "phone").sentence, testing::EndsWith(" A client without a key was not let in."));
    published.health.strangers = 3;
    EXPECT_THAT(checkOf(published, "phone").sentence, testing::EndsWith(" 3 clients without a key were not let in."));
    for (const Check& check : diagnosis(published, HostSystem::linuxDesktop, ja)) {
        const bool isPhones = check.id == "phone";
        EXPECT_EQ(check.sentence.ends_with("鍵のないクライアント 3 台を拒否しました。"), isPhones);
    }
}

TEST(Diagnosis, ExplainsAStalePermissionOnAMac) {
    PublishedState published;
    published.health.screen = {.state = LinkHealth::State::down, .detail = "stale"};
    EXPECT_THAT(checkOf(published, "screen", HostSystem::mac).remedy, HasSubstr("remove Lumbrine with “−”"));
    for (const Check& check : diagnosis(published, HostSystem::linuxDesktop, en))
        EXPECT_NE(check.id, "screen");
}

TEST(Diagnosis, HasTheSameChecksInBothLanguagesAndNoEmptySentence) {
    for (const HostSystem system : {HostSystem::linuxDesktop, HostSystem::mac}) {
        const auto one = diagnosis({}, system, en), other = diagnosis({}, system, ja);
        ASSERT_EQ(one.size(), other.size());
        for (std::size_t i = 0; i < one.size(); ++i) {
            EXPECT_EQ(one[i].id, other[i].id);
            EXPECT_EQ(one[i].state, other[i].state);
            EXPECT_EQ(one[i].remedy.empty(), other[i].remedy.empty()) << one[i].id;
            EXPECT_FALSE(one[i].sentence.empty() || other[i].sentence.empty()) << one[i].id;
        }
    }
}

TEST(Diagnosis, IsSummedUpByItsWorstCheck) {
    const Check fine{"a", CheckState::fine, "A", "a is fine."}, waits{"b", CheckState::waiting, "B", "b waits."},
        wrong{"c", CheckState::wrong, "C", "c is wrong.", "Mend c."};
    EXPECT_EQ(summaryOf({fine, waits, wrong}, en), "c is wrong.");
    EXPECT_EQ(summaryOf({fine, waits}, en), "b waits.");
    EXPECT_EQ(summaryOf({fine}, ja), "すべて正常です。");
    EXPECT_EQ(listed({fine, waits, wrong}), "✓ A: a is fine.\n… B: b waits.\n✗ C: c is wrong.\n    → Mend c.\n");
}

TEST(Diagnosis, WritesAddressesAsPeopleDo) {
    EXPECT_EQ(withPlainAddresses("::ffff:192.168.1.7 (+1 waiting)"), "192.168.1.7 (+1 waiting)");
    EXPECT_EQ(withPlainAddresses("::ffff:1.2.3.4, ::ffff:5.6.7.8"), "1.2.3.4, 5.6.7.8");
    EXPECT_EQ(withPlainAddresses("fe80::ffff:1"), "fe80::ffff:1");
    EXPECT_EQ(withPlainAddresses(""), "");
}

} // namespace
} // namespace lumbrine
