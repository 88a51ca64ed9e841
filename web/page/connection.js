// @ts-check
// The WebSocket to the gateway: one message is one datagram. Opens it, and opens it again until the gateway is back.

/**
 * How the way to the gateway is. open: there is one; closed: the gateway does not answer; refused: it answers, but not
 * to this key; crowded: it has too many pages.
 * @typedef {"opening" | "open" | "closed" | "refused" | "crowded"} WayState
 */

const closeCrowded = 4001;
const unanswered = 0; // no code of a WebSocket
const patience = 1200; // a lost packet of the handshake costs a second
const pauses = { closed: 200, refused: 3000, crowded: 3000 };
const socketStaysSilent = 4000;

export class Connection {
    /** @type {WayState} */
    state = "opening";
    /** @type {() => void} */
    onState = () => {};
    /** @type {() => void} */
    onOpen = () => {};
    /** The datagrams of a socket that was open and is not any more are never heard again. @type {() => void} */
    onLoss = () => {};
    /** @type {(datagram: Uint8Array) => void} */
    onDatagram = () => {};

    /** @type {WebSocket | null} */
    #socket = null;
    /** @type {ReturnType<typeof setTimeout> | undefined} */
    #timer;
    #key;
    #startedAt = 0;
    #stopped = true;

    /** @param {string} key */
    constructor(key) {
        this.#key = key;
    }

    /** Opens a socket now, in the place of any that there is. */
    open() {
        this.#stopped = false;
        this.#abandon();
        this.#startedAt = performance.now();
        if (!this.#key) return this.#enter("refused");
        const address = new URL("ws", location.href);
        address.protocol = location.protocol === "https:" ? "wss:" : "ws:";
        address.hash = "";
        const socket = new WebSocket(address, ["lumbrine", "key-" + this.#key]);
        socket.binaryType = "arraybuffer";
        socket.onopen = () => this.#opened();
        socket.onmessage = (event) => this.onDatagram(new Uint8Array(event.data));
        socket.onclose = (event) => this.#closed(event.code);
        this.#socket = socket;
        this.#timer = setTimeout(() => this.#closed(unanswered), patience);
    }

    /** Sends this, or drops it while there is no way. @param {Uint8Array} datagram */
    send(datagram) {
        if (this.#socket?.readyState === WebSocket.OPEN) this.#socket.send(/** @type {BufferSource} */ (datagram));
    }

    /** Nothing has come for so long that the socket may be a dead one, which the browser cannot know. */
    get isSuspect() {
        return this.state === "open" && performance.now() - this.#startedAt >= socketStaysSilent;
    }

    /** Ends it for good: the page is closed, or another one of this browser has taken its place. */
    stop() {
        this.#stopped = true;
        this.#abandon();
        this.#enter("closed");
    }

    #opened() {
        clearTimeout(this.#timer);
        this.#enter("open");
        this.onOpen();
    }

    /** @param {number} code */
    async #closed(code) {
        const wasOpen = this.state === "open";
        this.#abandon();
        if (wasOpen) this.onLoss();
        if (this.#stopped) return;
        const attempt = this.#timer;
        const isRefusal = !wasOpen && code !== unanswered;
        const reason = code === closeCrowded ? "crowded" : isRefusal ? await this.#reason() : "closed";
        if (this.#stopped || this.#timer !== attempt || this.#socket) return; // opened meanwhile
        this.#enter(reason);
        this.#timer = setTimeout(() => this.open(), pauses[reason]);
    }

    /** A refused handshake looks like no answer at all: only another question tells. */
    async #reason() {
        try {
            const small = new URL("manifest.webmanifest", location.href);
            const answer = await fetch(small, { cache: "no-store", signal: AbortSignal.timeout(patience) });
            return answer.ok ? "refused" : "closed";
        } catch {
            return "closed"; // nobody answers
        }
    }

    #abandon() {
        clearTimeout(this.#timer);
        this.#timer = undefined;
        const socket = this.#socket;
        if (!socket) return;
        this.#socket = null;
        socket.onopen = socket.onmessage = socket.onclose = null;
        socket.close();
    }

    /** @param {WayState} state */
    #enter(state) {
        if (this.state === state) return;
        this.state = state;
        this.onState();
    }
}
