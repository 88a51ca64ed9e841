// @ts-check
// A client of the receiver, as docs/protocol.md tells its rhythm: says hello until it is answered, gives signs of life,
// and knows who is in control. What carries the datagrams is somebody else's business: see connection.js.
import { faderMove, hello, takeOver, vpotDelta } from "./commands.js";
import { HeldFaders } from "./held_faders.js";
import { RoundTrips } from "./round_trips.js";
import { SessionPicture } from "./session_picture.js";

/** @typedef {import("./messages.js").Message} Message */
/**
 * searching: nobody has answered yet; connected: this client is in control; busy: another one is; takenOver: another
 * one is, and this one was before; lost: the receiver went silent.
 * @typedef {"searching" | "connected" | "busy" | "takenOver" | "lost"} LinkState
 */

const keepAlive = 1000; // the longest time without a datagram to the receiver
const refresh = 10_000; // the time from one full state to the next, which repairs losses
const doubt = 1400; // the receiver is asked after this silence; it says something at least every 1200 ms
const tooOld = 1900; // what is asked after this silence might wait in the network and be carried out much later
const silence = 2600; // after this one it is lost
export const tickInterval = 200;

export class Link {
    /** @type {LinkState} */
    state = "searching";
    picture = new SessionPicture();
    roundTrips = new RoundTrips();
    /** Counts how often control was lost: what was begun before that is not to be ended after it. */
    losses = 0;
    faders = new HeldFaders((datagram) => this.send(datagram));

    /** Called after every change of state. @type {(state: LinkState) => void} */
    onState = () => {};
    /** Called for each message, after it has changed the picture. @type {(message: Message) => void} */
    onMessage = () => {};
    /** Called when nothing that is held or meant counts any more. */
    onLetGo = () => {};

    #transmit;
    #token;
    #now;
    #wantsControl = false;
    #heardAt = -Infinity;
    #sentAt = -Infinity;
    #helloAt = -Infinity;

    /**
     * @param {(datagram: Uint8Array) => void} transmit drops what cannot be sent now
     * @param {bigint} token
     * @param {() => number} now in milliseconds
     */
    constructor(transmit, token, now = () => performance.now()) {
        this.#transmit = transmit;
        this.#token = token;
        this.#now = now;
    }

    /** A way to the receiver has opened, or the old one may be good again: asks at once. */
    start() {
        this.#heardAt = Math.max(this.#heardAt, this.#now() - doubt);
        this.#sayHello();
    }

    /** The way to the receiver is gone. */
    lose() {
        this.#letGo();
        this.#wantsControl = false;
        this.roundTrips.forget();
        if (this.state !== "searching") this.#enter("lost");
    }

    /** How long nothing has come, in milliseconds. */
    get silentFor() {
        return this.#now() - this.#heardAt;
    }

    get inControl() {
        return this.state === "connected";
    }

    /** Sends a command, if it can be carried out soon. @param {Uint8Array} command */
    command(command) {
        if (this.#isPrompt) this.send(command);
    }

    get #isPrompt() {
        return this.inControl && this.silentFor < tooOld;
    }

    /** @param {Uint8Array} datagram */
    send(datagram) {
        this.#sentAt = this.#now();
        this.#transmit(datagram);
    }

    /** @param {number} strip */
    touch(strip) {
        if (this.#isPrompt) this.faders.touch(strip);
    }

    /** @param {number} strip @param {number} value */
    move(strip, value) {
        if (this.faders.holds(strip)) this.command(faderMove(strip, value));
    }

    /** @param {number} strip */
    release(strip) {
        if (!this.faders.holds(strip)) return;
        this.roundTrips.asked(strip, this.#now());
        this.faders.release(strip);
    }

    /** Takes control from another client. Repeated with each hello for as long as the receiver refuses. */
    takeOver() {
        this.#wantsControl = !this.inControl;
        this.send(takeOver());
        this.#sayHello();
    }

    /** @param {Message} message */
    take(message) {
        this.#heardAt = this.#now();
        if (message.type === "busy") {
            this.#refused();
        } else if (message.type === "pong") {
            this.roundTrips.answered("hello", this.#heardAt);
            this.#wantsControl = false;
            if (!this.inControl) this.#answered();
        } else if (this.state === "searching" || this.state === "lost") {
            // The pong was lost, or the receiver goes on after a pause: what was missed is asked for.
            this.#answered();
            this.#sayHello();
        }
        if (message.type === "fader") this.roundTrips.answered(message.strip, this.#heardAt);
        this.picture.apply(message);
        this.onMessage(message);
    }

    /** Called every `tickInterval`. */
    tick() {
        const now = this.#now();
        const sinceHello = now - this.#helloAt;
        if (this.silentFor >= silence && this.state !== "searching") this.lose();
        if (!this.inControl) {
            if (sinceHello < keepAlive) return;
            if (this.#wantsControl) this.takeOver();
            else this.#sayHello();
            return;
        }
        const isQuiet = this.silentFor >= doubt && sinceHello >= keepAlive;
        if (isQuiet || sinceHello >= refresh) this.#sayHello();
        else if (now - this.#sentAt >= keepAlive) this.send(vpotDelta(0, 0)); // turns nothing: a sign of life
    }

    #sayHello() {
        this.#helloAt = this.#now();
        this.roundTrips.asked("hello", this.#helloAt);
        this.send(hello(this.#token));
    }

    #refused() {
        this.roundTrips.dismissed("hello");
        this.#letGo();
        if (this.state === "connected") this.#enter("takenOver");
        else if (this.state !== "takenOver") this.#enter("busy");
    }

    // What was known before may be of another session by now.
    #answered() {
        this.picture = new SessionPicture();
        this.#enter("connected");
    }

    #letGo() {
        ++this.losses;
        this.onLetGo();
        this.faders.forget();
    }

    /** @param {LinkState} state */
    #enter(state) {
        if (this.state === state) return;
        this.state = state;
        this.onState(state);
    }
}
