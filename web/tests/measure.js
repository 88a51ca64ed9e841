// @ts-check
// node measure.js: how fast the page is in Chromium, as a JSON list for scripts/bench_table.py. Times in nanoseconds.
import { readFileSync } from "node:fs";
import { fingersOn, middleOf, moved } from "./hands.js";
import { BareEcho, PlayedReceiver, clock } from "./peers.js";
import { Gateway, Studio, launch, openPage, phone } from "./studio.js";

/** @typedef {import("playwright-core").Page} Page */
/** @typedef {{name: string, ours: number, peer?: number, goal?: number, limit?: number}} Row */

const moves = 400; // half of them to the peer
const pause = 13; // from move to move, so that none waits for a picture and each is a message of its own
const musicTime = 5;
const loads = 5;
const slowness = 4; // a phone of some years ago
const perMillisecond = 1e6;

const browser = await launch();
try {
    const rows = [...(await fingerToDatagram()), ...(await timeForMusic())];
    console.log(JSON.stringify(rows, null, 1));
} finally {
    await browser.close();
}

/** @param {number[]} times @param {number} share */
function percentile(times, share) {
    return times.sort((a, b) => a - b)[Math.floor(share * (times.length - 1))];
}

/** From the event of a finger to the datagram, beside the same message through an echo. @returns {Promise<Row[]>} */
async function fingerToDatagram() {
    const receiver = new PlayedReceiver();
    const echo = new BareEcho();
    const [udp, tcp] = await Promise.all([receiver.open(), echo.open()]);
    const gateway = await Gateway.open(udp);
    const context = await browser.newContext({ ...phone, bypassCSP: true }); // for the echo is another server
    await context.addInitScript(noteMoves, tcp);
    const page = await openPage(context, gateway);
    const fingers = await fingersOn(page);
    const start = await middleOf(page.locator(".strip .fader").first());
    await fingers.down([start]);
    for (let i = 1; i <= moves; ++i) {
        const next = new Promise((resolve) => setTimeout(resolve, pause));
        await fingers.move([moved(start, 0, -i / 2)]); // each move gives another value
        await next;
    }
    await fingers.up();
    /** @type {Noted} */
    const { began, echoed, origin } = await page.evaluate(() => Reflect.get(window, "noted"));
    await context.close();
    await gateway.close();
    receiver.close();
    echo.close();

    const faderMoves = receiver.came.filter(({ bytes }) => bytes[1] === 0x01);
    const cameAt = new Map(faderMoves.map(({ bytes, at }) => [bytes.readUInt16BE(3), at]));
    const ours = began.map(([value, at]) => (cameAt.get(value) ?? NaN) - origin - at).filter(Number.isFinite);
    if (ours.length < moves / 4 || echoed.length < moves / 4) throw new Error(`${ours.length}, ${echoed.length} moves`);
    return [0.5, 0.99].map((share) => ({
        name: `finger's event to datagram (p${100 * share})`,
        ours: perMillisecond * percentile(ours, share),
        peer: perMillisecond * percentile(echoed, share),
        goal: 1.3,
    }));
}

/**
 * began: of each value that goes to the gateway, when its finger's event was; echoed: how long the others took; both on
 * the page's clock, which began at `origin`.
 * @typedef {{began: [value: number, at: number][], echoed: number[], origin: number}} Noted
 */

/** Runs in the page: every other move goes to the echo. @param {number} port */
function noteMoves(port) {
    /** @type {Noted} */
    const noted = { began: [], echoed: [], origin: performance.timeOrigin };
    Reflect.set(window, "noted", noted);
    let movedAt = 0;
    addEventListener("pointermove", (event) => (movedAt = event.timeStamp), true);
    const echo = new WebSocket(`ws://127.0.0.1:${port}/`);
    echo.binaryType = "arraybuffer";
    /** @type {Map<number, number>} */
    const echoing = new Map();
    echo.onmessage = ({ data }) => {
        const began = echoing.get(new DataView(data).getUint16(3));
        if (began !== undefined) noted.echoed.push(performance.now() - began);
    };
    const send = WebSocket.prototype.send;
    let count = 0;
    WebSocket.prototype.send = function (data) {
        const isMove = data instanceof Uint8Array && data[1] === 0x01;
        if (!isMove) return send.call(this, data);
        const value = data[3] * 256 + data[4];
        if (++count % 2 === 0) {
            noted.began.push([value, movedAt]);
            return send.call(this, data);
        }
        echoing.set(value, movedAt);
        send.call(echo, data);
    };
}

/** What a page with meters costs, and how long a slow phone takes to show it. @returns {Promise<Row[]>} */
async function timeForMusic() {
    const studio = await Studio.open(24);
    const context = await browser.newContext(phone);
    const pictures = [];
    for (let i = 0; i < loads; ++i) pictures.push(await firstPicture(context, studio));
    const page = await openPage(context, studio);
    studio.receiver.type("play");
    await page.locator(".light.play[data-on]").waitFor();
    const session = await page.context().newCDPSession(page);
    await session.send("Performance.enable");
    const scriptTime = async () => {
        const { metrics } = await session.send("Performance.getMetrics");
        return metrics.find(({ name }) => name === "ScriptDuration")?.value ?? 0;
    };
    const pid = Number(studio.gateway.program.process.pid);
    const [scripts, gateway, begin] = [await scriptTime(), processorTime(pid), clock()];
    await new Promise((resolve) => setTimeout(resolve, 1000 * musicTime));
    const seconds = (clock() - begin) / 1000;
    const perSecond = (1e9 / seconds) * ((await scriptTime()) - scripts);
    const ofGateway = (1e9 / seconds) * (processorTime(pid) - gateway);
    await context.close();
    await studio.close();
    return [
        // The best, because others who use this machine are no slowness of a phone.
        { name: "page's first picture, slow phone (best)", ours: perMillisecond * Math.min(...pictures), limit: 1e9 },
        { name: "page's script time a second, meters", ours: perSecond, limit: 60 * perMillisecond },
        { name: "gateway's for this page", ours: ofGateway, limit: 0.01e9 },
    ];
}

/**
 * When the strips are drawn, in milliseconds since the address was opened. Nothing of the page is kept from before.
 * @param {import("playwright-core").BrowserContext} context @param {Studio} studio
 */
async function firstPicture(context, studio) {
    const page = await context.newPage();
    await page.addInitScript(() => {
        const look = () => {
            if (!document.querySelector(".strips")) return void requestAnimationFrame(look);
            requestAnimationFrame(() => Reflect.set(window, "drawnAt", performance.now()));
        };
        requestAnimationFrame(look);
    });
    const session = await context.newCDPSession(page);
    await session.send("Network.clearBrowserCache");
    await session.send("Emulation.setCPUThrottlingRate", { rate: slowness });
    await page.goto(studio.address);
    const drawnAt = await page.waitForFunction(() => Reflect.get(window, "drawnAt"));
    const time = /** @type {number} */ (await drawnAt.jsonValue());
    await page.close();
    return time;
}

/** Of a process so far, in seconds. @param {number} pid */
function processorTime(pid) {
    const fields = readFileSync(`/proc/${pid}/stat`, "utf8").replace(/^.*\) /, "").split(" ");
    const ticks = 100; // a second, on every Linux
    return (Number(fields[11]) + Number(fields[12])) / ticks;
}
