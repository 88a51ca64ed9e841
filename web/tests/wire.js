// @ts-check
// A network between the page and the gateway that can be cut: what is sent meanwhile arrives when it is whole again, as
// TCP has it, and new connections are not answered.
import { createServer, connect } from "node:net";

export class Wire {
    #isCut = false;
    /** @type {Set<{pump: () => void}>} */
    #pairs = new Set();
    #server;
    #gatewayPort;

    /** @param {number} gatewayPort */
    constructor(gatewayPort) {
        this.#gatewayPort = gatewayPort;
        this.#server = createServer((phone) => this.#join(phone));
    }

    /** @returns {Promise<number>} the port to connect to */
    open() {
        return new Promise((resolve) => {
            this.#server.listen(0, "127.0.0.1", () => {
                const address = this.#server.address();
                resolve(address && typeof address === "object" ? address.port : 0);
            });
        });
    }

    cut() {
        this.#isCut = true;
    }

    mend() {
        this.#isCut = false;
        for (const pair of this.#pairs) pair.pump();
    }

    close() {
        this.#server.close();
    }

    /** @param {import("node:net").Socket} phone */
    #join(phone) {
        const gateway = connect(this.#gatewayPort, "127.0.0.1");
        /** @type {(() => void)[]} */
        const waiting = [];
        const pair = { pump: () => waiting.splice(0).forEach((deliver) => deliver()) };
        this.#pairs.add(pair);
        /** @param {() => void} deliver */
        const whenWhole = (deliver) => (this.#isCut ? waiting.push(deliver) : deliver());
        for (const [from, to] of [[phone, gateway], [gateway, phone]]) {
            from.on("data", (bytes) => whenWhole(() => to.write(bytes)));
            from.on("end", () => whenWhole(() => to.end()));
            from.on("error", () => to.destroy());
            from.on("close", () => this.#pairs.delete(pair));
        }
    }
}
