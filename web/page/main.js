// @ts-check
// Puts the page together.
import { seekBank } from "./commands.js";
import { Connection } from "./connection.js";
import { make } from "./dom.js";
import { Grips } from "./grips.js";
import { GroupPanel } from "./group_panel.js";
import { Groups } from "./groups.js";
import { deviceToken, onOtherKey, pairingKey } from "./identity.js";
import { Link, tickInterval } from "./link.js";
import { parseMessage } from "./messages.js";
import { ModeSheet } from "./mode_sheet.js";
import { keepScreenOn, onlyTab, watchPresence } from "./presence.js";
import { SessionList } from "./session_list.js";
import { SessionMap } from "./session_map.js";
import { StatusBar } from "./status_bar.js";
import { StripsPanel } from "./strips_panel.js";
import { ToolBar } from "./tool_bar.js";
import { isJapanese } from "./words.js";

document.documentElement.lang = isJapanese(navigator.languages) ? "ja" : "en";

const connection = new Connection(pairingKey());
const link = new Link((datagram) => connection.send(datagram), deviceToken());
const grips = new Grips(link);
const groups = new Groups(localStorage);

const sheet = new ModeSheet();
const status = new StatusBar(connection, link);
const map = new SessionMap(link);
const panel = new StripsPanel(link, grips, sheet);
const list = new SessionList(link, grips, groups, sheet);
const group = new GroupPanel(link, grips, groups, sheet);
const tools = new ToolBar(link, panel, list);

const session = make("div", { class: "tracks" }, list.element, group.element);
const main = make("main", {}, map.element, panel.element, session);
document.body.replaceChildren(status.element, main, tools.element, status.veil, sheet.element, tools.sheet);

// ---- Drawing: at most once a frame, and only what may have changed.

/** @typedef {"meters" | "status" | "rows" | "all"} Part */

/** @type {Set<Part>} */
const stale = new Set();

/** @param {Part} part */
function drawSoon(part = "all") {
    if (stale.size === 0) requestAnimationFrame(draw);
    stale.add(part);
}

function draw() {
    const all = stale.has("all");
    grips.flush();
    if (all || stale.has("status")) status.update();
    if (all || stale.has("meters")) {
        panel.updateMeters();
        list.updateMeters();
    }
    if (all) drawAll();
    else if (stale.has("rows")) list.place();
    stale.clear();
}

function drawAll() {
    for (const part of [main, tools.element]) part.toggleAttribute("inert", !link.inControl || status.isElsewhere);
    map.update();
    tools.update();
    if (!tools.showsTracks) return panel.update();
    list.update();
    group.update();
}

grips.onChange = () => drawSoon();
panel.onPages = () => drawSoon();
group.onChange = list.onMember = list.onSearch = () => drawSoon();
list.onScroll = () => drawSoon("rows");
list.onJump = (index) => {
    link.command(seekBank(index));
    tools.show(false);
};
list.onOffStrips = () => status.hint("onStripsOnly");
tools.onView = () => {
    panel.element.hidden = tools.showsTracks;
    session.hidden = list.element.hidden = !tools.showsTracks;
    grips.releaseAll();
    drawSoon();
};
tools.show(false);

// ---- The way to the receiver.

connection.onDatagram = (datagram) => {
    const message = parseMessage(datagram);
    if (message) link.take(message);
};
connection.onOpen = () => link.start();
connection.onLoss = () => link.lose();
connection.onState = () => drawSoon();
link.onState = () => drawSoon();
link.onMessage = ({ type }) => drawSoon(type === "meters" ? "meters" : "all");
link.onLetGo = () => grips.dropAll();

setInterval(() => {
    if (status.isElsewhere) return;
    link.tick();
    if (link.state === "lost" && connection.isSuspect) connection.open();
    drawSoon("status"); // the round trip
    drawSoon("meters"); // peaks fall, also while no levels come
}, tickInterval);

// ---- Who is there.

const takeThisTab = onlyTab(() => {
    status.isElsewhere = true;
    grips.releaseAll();
    connection.stop();
    link.lose();
    drawSoon();
});

function useThisTab() {
    status.isElsewhere = false;
    takeThisTab();
    connection.open();
    drawSoon();
}

watchPresence({
    leave: () => grips.releaseAll(),
    back: () => {
        if (status.isElsewhere) return;
        if (connection.state === "open") link.start();
        else connection.open();
    },
    end: () => {
        grips.releaseAll();
        connection.stop();
        link.lose();
    },
});
status.onUseHere = useThisTab;
onOtherKey(() => location.reload());
keepScreenOn();
useThisTab();
document.addEventListener("contextmenu", (event) => event.preventDefault());
