// @ts-check
// A studio for the tests in a browser: the receiver with the simulated Pro Tools, the gateway, and Chromium, all real.
import { spawn } from "node:child_process";
import { createSocket } from "node:dgram";
import { mkdtempSync, rmSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { createInterface } from "node:readline";
import { chromium } from "playwright-core";

/**
 * @typedef {{fader: number, mute: boolean, solo: boolean, record: boolean, name: string, hidden: boolean}} HostTrack
 */

const bin = process.env.LUMBRINE_BIN ?? new URL("../../build/release/bin", import.meta.url).pathname;

/** A program whose lines can be waited for. */
export class Program {
    /** @type {string[]} */
    lines = [];
    /** @type {Set<() => void>} */
    #watchers = new Set();

    /** @param {string} name @param {string[]} options @param {Record<string, string>} environment */
    constructor(name, options, environment) {
        this.process = spawn(join(bin, name), options, {
            env: { ...process.env, LANGUAGE: "en", ...environment },
            stdio: ["pipe", "pipe", "inherit"],
        });
        this.ended = new Promise((resolve) => this.process.once("exit", resolve));
        createInterface({ input: this.process.stdout }).on("line", (line) => {
            this.lines.push(line);
            for (const watch of this.#watchers) watch();
        });
    }

    /** The first line from `from` on that matches. @param {RegExp} pattern @returns {Promise<RegExpMatchArray>} */
    line(pattern, from = 0) {
        return new Promise((resolve, reject) => {
            const look = () => {
                for (const line of this.lines.slice(from)) {
                    const found = line.match(pattern);
                    if (!found) continue;
                    stop();
                    return resolve(found);
                }
            };
            const timer = setTimeout(() => {
                stop();
                reject(new Error(`no line ${pattern} in:\n${this.lines.join("\n")}`));
            }, 20_000);
            const stop = () => {
                clearTimeout(timer);
                this.#watchers.delete(look);
            };
            this.#watchers.add(look);
            look();
        });
    }

    /** @param {string} command */
    type(command) {
        this.process.stdin.write(command + "\n");
    }

    /** @param {NodeJS.Signals} [signal] */
    end(signal = "SIGTERM") {
        this.process.kill(signal);
        return this.ended;
    }
}

/** A UDP port that is free now. @returns {Promise<number>} */
export function freePort() {
    return new Promise((resolve) => {
        const socket = createSocket("udp4");
        socket.bind(0, "127.0.0.1", () => {
            const { port } = socket.address();
            socket.close(() => resolve(port));
        });
    });
}

/** lumbrine-web on any free port, with a key of its own. */
export class Gateway {
    /** @type {Program} */
    program = /** @type {any} */ (null);
    /** The page's address, with the key. */
    address = "";
    #home = mkdtempSync(join(tmpdir(), "lumbrine-web-"));
    #receiverPort;
    #options;
    #port = 0;

    /** @param {number} receiverPort @param {string[]} options more of its command line */
    constructor(receiverPort, options) {
        this.#receiverPort = receiverPort;
        this.#options = options;
    }

    /** @param {number} receiverPort @param {string[]} options */
    static async open(receiverPort, options = []) {
        const gateway = new Gateway(receiverPort, options);
        await gateway.start();
        return gateway;
    }

    /** Also after its end: on the same port, with the same key. */
    async start() {
        const receiver = ["--receiver", `127.0.0.1:${this.#receiverPort}`];
        const options = ["--port", String(this.#port), ...receiver, ...this.#options];
        this.program = new Program("lumbrine-web", options, { HOME: this.#home, XDG_STATE_HOME: this.#home });
        const [, port, key] = await this.program.line(/http:\/\/.*:(\d+)\/#(\w{26})/);
        this.#port = Number(port);
        this.address = `http://127.0.0.1:${port}/#${key}`;
    }

    get port() {
        return this.#port;
    }

    async close() {
        await this.program.end();
        rmSync(this.#home, { recursive: true });
    }
}

export class Studio {
    /** The receiver and the simulated Pro Tools. @type {Program} */
    receiver = /** @type {any} */ (null);
    /** @type {Gateway} */
    gateway = /** @type {any} */ (null);
    #udp = 0;
    #tracks = 24;

    /** @param {number} tracks */
    static async open(tracks) {
        const studio = new Studio();
        studio.#tracks = tracks;
        studio.#udp = await freePort();
        await studio.startReceiver();
        studio.gateway = await Gateway.open(studio.#udp);
        return studio;
    }

    async startReceiver() {
        const options = ["--tracks", String(this.#tracks), "--scripting-port", "0"];
        this.receiver = new Program("lumbrine-demo", options, { QV_PORT: String(this.#udp), QV_NO_BONJOUR: "1" });
        await this.receiver.line(/Connect a client/);
    }

    /** The page's address, with the key. */
    get address() {
        return this.gateway.address;
    }

    /** The page's address on another port, which leads to the gateway. @param {number} port */
    addressAt(port) {
        return this.address.replace(`:${this.gateway.port}`, `:${port}`);
    }

    /** A client that is no browser; gives its exit status. @param {string[]} options */
    remote(...options) {
        return new Program("lumbrine-remote", [`127.0.0.1:${this.#udp}`, ...options], {}).ended;
    }

    /**
     * The tracks that Pro Tools has now.
     * @returns {Promise<HostTrack[]>}
     */
    async hostTracks() {
        const from = this.receiver.lines.length;
        this.receiver.type("tracks");
        this.receiver.type("help"); // its first line ends the list
        await this.receiver.line(/^reconnect /, from);
        const trackLine = /^ *\d+ {2}(\d\.\d+) {2}(....) {2}\w+ +(.*)$/;
        const rows = this.receiver.lines.slice(from).map((line) => line.match(trackLine));
        return rows
            .filter((row) => row !== null)
            .map(([, fader, flags, name]) => ({
                fader: Number(fader),
                mute: flags[0] === "M",
                solo: flags[1] === "S",
                record: flags[2] === "R",
                name: name.replace("  (hidden)", ""),
                hidden: name.endsWith("  (hidden)"),
            }));
    }

    /** Those that the surfaces show, in their order. */
    async shownTracks() {
        return (await this.hostTracks()).filter((track) => !track.hidden);
    }

    async close() {
        await Promise.all([this.gateway.close(), this.receiver.end()]);
    }
}

export const phone = { viewport: { width: 390, height: 844 }, deviceScaleFactor: 3, isMobile: true, hasTouch: true };

export const launch = () => chromium.launch({ executablePath: "/usr/bin/chromium", args: ["--no-sandbox"] });

/**
 * The page in this context, in control and with the session's tracks.
 * @param {import("playwright-core").BrowserContext} context @param {{address: string}} studio
 */
export async function openPage(context, studio, { takesOver = false, patience = 60_000 } = {}) {
    const page = await context.newPage();
    page.setDefaultTimeout(20_000);
    page.on("pageerror", (error) => console.error(`the page failed: ${error.stack}`));
    await page.goto(studio.address);
    if (takesOver) await page.locator(".take-over").tap();
    await page.locator('.status[data-state="good"]').waitFor({ timeout: patience });
    return page;
}
