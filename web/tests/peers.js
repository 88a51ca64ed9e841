// @ts-check
// The far ends for measurements: a receiver that this program plays, and a bare WebSocket echo.
import { createHash } from "node:crypto";
import { createSocket } from "node:dgram";
import { createServer } from "node:http";

/** The time since 1970 in milliseconds, finely. */
export const clock = () => performance.timeOrigin + performance.now();

/** Answers each hello with a session of eight tracks on eight strips, and keeps all datagrams with their times. */
export class PlayedReceiver {
    /** @type {{bytes: Buffer, at: number}[]} */
    came = [];
    #socket = createSocket("udp4");

    /** @returns {Promise<number>} its port */
    open() {
        this.#socket.on("message", (datagram, peer) => {
            this.came.push({ bytes: datagram, at: clock() });
            if (datagram[1] !== 0x00) return;
            const state = [[0x01, 0x7f], [0x01, 0x16, 0, 0, 0, 8, 8], [0x01, 0x12, 0, 0, 0]];
            for (let strip = 0; strip < 8; ++strip) state.push([0x01, 0x10, strip, ...Buffer.from(`T ${strip} `)]);
            for (const bytes of state) this.#socket.send(Uint8Array.from(bytes), peer.port, peer.address);
        });
        return new Promise((resolve) => {
            this.#socket.bind(0, "127.0.0.1", () => resolve(this.#socket.address().port));
        });
    }

    close() {
        this.#socket.close();
    }
}

/** Reads WebSocket messages of less than 126 bytes and writes them back. */
export class BareEcho {
    #server = createServer();
    /** @type {import("node:stream").Duplex[]} */
    #open = [];

    /** @returns {Promise<number>} its port */
    open() {
        this.#server.on("upgrade", (request, socket) => {
            this.#open.push(socket);
            const secret = request.headers["sec-websocket-key"] + "258EAFA5-E914-47DA-95CA-C5AB0DC85B11";
            const accept = createHash("sha1").update(secret).digest("base64");
            const lines = ["HTTP/1.1 101 Switching Protocols", "Upgrade: websocket", "Connection: Upgrade"];
            socket.write([...lines, `Sec-WebSocket-Accept: ${accept}`, "", ""].join("\r\n"));
            socket.on("data", (frames) => echo(socket, frames));
            socket.on("error", () => socket.destroy());
        });
        return new Promise((resolve) => {
            this.#server.listen(0, "127.0.0.1", () => {
                const address = this.#server.address();
                resolve(address && typeof address === "object" ? address.port : 0);
            });
        });
    }

    close() {
        for (const socket of this.#open) socket.destroy();
        this.#server.close();
    }
}

/** @param {import("node:stream").Duplex} socket @param {Buffer} frames of a browser, whole */
function echo(socket, frames) {
    for (let at = 0; at < frames.length; ) {
        const length = frames[at + 1] & 0x7f;
        const mask = frames.subarray(at + 2, at + 6);
        const payload = frames.subarray(at + 6, at + 6 + length).map((byte, i) => byte ^ mask[i % 4]);
        socket.write(Buffer.concat([Buffer.from([frames[at], length]), payload]));
        at += 6 + length;
    }
}
