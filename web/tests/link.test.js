// @ts-check
// The rhythm of a client, on a clock of the tests.
import assert from "node:assert/strict";
import test, { beforeEach } from "node:test";
import { positionFor } from "../page/fader_scale.js";
import { Grips } from "../page/grips.js";
import { Link, tickInterval } from "../page/link.js";
import { TrackMove } from "../page/track_move.js";

/** @typedef {import("../page/messages.js").Message} Message */

let now = 0;
/** @type {number[]} */
let sent = [];
/** @type {Link} */
let link;

const opcode = { hello: 0x00, move: 0x01, touch: 0x02, release: 0x03, vpot: 0x07, groupFaders: 0x23, takeOver: 0x25 };
/** @type {Message} */
const pong = { type: "pong" };
/** @type {Message} */
const busy = { type: "busy" };
/** @type {Message} */
const bankPos = { type: "bankPos", offset: 0, tracks: 40, shown: 16 };

beforeEach(() => {
    now = 1000;
    sent = [];
    link = new Link((datagram) => sent.push(datagram[1]), 7n, () => now);
});

/** Lets time pass, with a message each second if there is one. @param {number} seconds @param {Message} [message] */
function pass(seconds, message) {
    for (let step = 0; step < (seconds * 1000) / tickInterval; ++step) {
        now += tickInterval;
        if (message && now % 1000 === 0) link.take(message);
        link.tick();
    }
}

/** @param {number} code */
const count = (code) => sent.filter((each) => each === code).length;

test("hello is said each second until it is answered", () => {
    link.start();
    pass(5);
    assert.equal(count(opcode.hello), 6);
    assert.equal(link.state, "searching");
    link.take(pong);
    assert.equal(link.state, "connected");
});

test("in control it gives a sign of life each second, and asks for everything every ten", () => {
    link.start();
    link.take(pong);
    pass(10, bankPos);
    assert.equal(count(opcode.vpot), 9);
    assert.equal(count(opcode.hello), 2);
});

test("a silent receiver is asked, and lost when it does not answer", () => {
    link.start();
    link.take(pong);
    pass(2);
    assert.equal(link.state, "connected");
    assert.equal(count(opcode.hello), 2);
    pass(1);
    assert.equal(link.state, "lost");
    link.take(bankPos);
    assert.equal(link.state, "connected");
    assert.equal(link.picture.trackCount, 40);
});

test("a take-over is repeated for as long as it is refused, and not after that", () => {
    link.start();
    link.take(busy);
    assert.equal(link.state, "busy");
    link.takeOver();
    pass(3, busy);
    assert.equal(count(opcode.takeOver), 4);
    link.take(pong);
    link.take(busy);
    assert.equal(link.state, "takenOver");
    pass(3, busy);
    assert.equal(count(opcode.takeOver), 4);
});

test("nothing is commanded while another device is in control", () => {
    link.start();
    link.take(busy);
    sent = [];
    link.command(Uint8Array.of(1, opcode.move, 0, 0, 0));
    link.touch(3);
    link.release(3);
    assert.deepEqual(sent, []);
});

/** In steps, because a timer that starts another one counts from the end of the step. */
const wait = (/** @type {import("node:test").TestContext} */ { mock }, /** @type {number} */ milliseconds) => {
    for (let step = 0; step < milliseconds; step += 10) mock.timers.tick(10);
};

test("nothing is commanded that the network might deliver much later", () => {
    link.start();
    link.take(pong);
    now += 2000;
    sent = [];
    link.command(Uint8Array.of(1, opcode.move, 0, 0, 0));
    assert.deepEqual(sent, []);
});

test("the touch of a resting finger is repeated, and a release sent three times within 100 ms", (context) => {
    context.mock.timers.enable({ apis: ["setTimeout"] });
    link.start();
    link.take(pong);
    sent = [];
    link.touch(3);
    wait(context, 1600);
    assert.equal(count(opcode.touch), 4);
    link.release(3);
    wait(context, 100);
    assert.equal(count(opcode.release), 3);
    wait(context, 5000);
    assert.deepEqual([count(opcode.touch), count(opcode.release)], [4, 3]);
});

test("no release follows the next touch", (context) => {
    context.mock.timers.enable({ apis: ["setTimeout"] });
    link.start();
    link.take(pong);
    link.touch(3);
    link.release(3);
    link.touch(3);
    wait(context, 400);
    assert.equal(count(opcode.release), 1);
});

test("a strip has one grip, which says where its fader is until it lets go", () => {
    const grips = new Grips(link);
    link.start();
    link.take(pong);
    link.take(bankPos);
    link.take({ type: "fader", strip: 2, value: 100 });
    const grip = grips.take(2);
    assert.ok(grip);
    assert.equal(grips.take(2), null);
    grip.move(5000);
    link.take({ type: "fader", strip: 2, value: 200 }); // a late echo
    assert.equal(grips.valueOf(2), 5000);
    grip.release();
    assert.equal(grips.valueOf(2), 5000);
    link.take({ type: "fader", strip: 2, value: 4990 });
    assert.equal(grips.valueOf(2), 4990);
    link.faders.forget();
});

test("a finger lets go when the strips show other tracks, and does not move these", () => {
    const grips = new Grips(link);
    link.start();
    link.take(pong);
    link.take(bankPos);
    const grip = grips.take(2);
    link.take({ ...bankPos, offset: 16 });
    sent = [];
    grip?.move(5000);
    grips.flush();
    assert.equal(grip?.isHeld, false);
    assert.deepEqual(sent, [opcode.release]);
    link.faders.forget();
});

/** @param {number} index @param {number} fader @returns {Message} */
const rowOf = (index, fader) => {
    const flags = { mute: false, solo: false, record: false, inputMonitor: false, select: false };
    return { type: "trackRow", row: { index, fader, ...flags, color: null, name: `Track ${index}`, comment: "" } };
};

test("tracks move together with their offsets: those on strips at once, the others at the end", () => {
    const grips = new Grips(link);
    link.start();
    link.take(pong);
    link.take(bankPos);
    link.take({ type: "fader", strip: 2, value: positionFor(-10) });
    link.take(rowOf(30, positionFor(-20)));
    sent = [];
    const move = new TrackMove(link, grips, [2, 30, 31]); // nobody has seen the fader of the last one
    move.moveBy(-5);
    assert.deepEqual(sent, [opcode.touch, opcode.move]);
    move.end();
    assert.deepEqual(sent, [opcode.touch, opcode.move, opcode.release, opcode.groupFaders]);
    assert.deepEqual([2, 30].map((index) => link.picture.faderOf(index)), [positionFor(-15), positionFor(-25)]);
    link.faders.forget();
});

test("a hand that outlasts a lost link moves nothing when it lifts", () => {
    const grips = new Grips(link);
    link.onLetGo = () => grips.dropAll();
    link.start();
    link.take(pong);
    link.take(bankPos);
    link.take(rowOf(30, positionFor(-20)));
    const move = new TrackMove(link, grips, [2, 30]);
    move.moveBy(-5);
    link.lose();
    link.start();
    link.take(pong);
    sent = [];
    move.moveBy(-9);
    move.end();
    assert.deepEqual(sent, []);
});

test("round trips are from a question to its answer, and not from one that was refused", () => {
    link.start();
    now += 12;
    link.take(pong);
    assert.deepEqual(link.roundTrips.summary(now), { median: 12, worst: 12 });
    link.takeOver();
    now += 3000;
    link.take(busy);
    assert.deepEqual(link.roundTrips.summary(now), { median: 12, worst: 12 });
});
