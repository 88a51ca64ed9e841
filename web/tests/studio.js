// @ts-check
// A studio for the tests in a browser: the receiver with the simulated Pro Tools, the gateway, and Chromium, all real.
import { spawn } from "node:child_process";
import { createSocket } from "node:dgram";
import { mkdtempSync, rmSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { createInterface } from "node:readline";
import { chromium } from "playwright-core";

/** @typedef {import("playwright-core").Page} Page */
/** @typedef {import("playwright-core").BrowserContextOptions} BrowserContextOptions */

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
function freePort() {
    return new Promise((resolve) => {
        const socket = createSocket("udp4");
        socket.bind(0, "127.0.0.1", () => {
            const { port } = socket.address();
            socket.close(() => resolve(port));
        });
    });
}

export class Studio {
    /** @type {Program} */ receiver;
    /** @type {Program} */ gateway;
    /** @type {string} the page's address, with the key */ address = "";
    #home = mkdtempSync(join(tmpdir(), "lumbrine-web-"));
    #udp = 0;
    #tcp = 0;
    #tracks = 24;

    /** @param {number} tracks */
    static async open(tracks) {
        const studio = new Studio();
        studio.#tracks = tracks;
        studio.#udp = await freePort();
        studio.#tcp = await freePort();
        await studio.startReceiver();
        await studio.startGateway();
        return studio;
    }

    async startReceiver() {
        const options = ["--tracks", String(this.#tracks), "--scripting-port", "0"];
        this.receiver = new Program("lumbrine-demo", options, { QV_PORT: String(this.#udp), QV_NO_BONJOUR: "1" });
        await this.receiver.line(/Connect a client/);
    }

    async startGateway() {
        const options = ["--port", String(this.#tcp), "--receiver", `127.0.0.1:${this.#udp}`];
        this.gateway = new Program("lumbrine-web", options, { HOME: this.#home, XDG_STATE_HOME: "", XDG_CONFIG_HOME: "" });
        const [, key] = await this.gateway.line(/http:\/\/.*\/#(\w{26})/);
        this.address = `http://127.0.0.1:${this.#tcp}/#${key}`;
    }

    /**
     * What Pro Tools has of a track now, read from its list: "fader 0.500".
     * @param {string} command
     */
    async ask(command) {
        const from = this.receiver.lines.length;
        this.receiver.type(command);
        this.receiver.type("help"); // its first line ends the answer
        await this.receiver.line(/^reconnect /, from);
        const answer = this.receiver.lines.slice(from);
        return answer.slice(0, answer.findIndex((line) => line.startsWith("reconnect ")));
    }

    async close() {
        await Promise.all([this.gateway.end(), this.receiver.end()]);
        rmSync(this.#home, { recursive: true });
    }
}

export const phone = { viewport: { width: 390, height: 844 }, deviceScaleFactor: 3, isMobile: true, hasTouch: true };

export const launch = () => chromium.launch({ executablePath: "/usr/bin/chromium", args: ["--no-sandbox"] });
