// @ts-check
// Puts the page together.
import { Connection } from "./connection.js";
import { make } from "./dom.js";
import { Grips } from "./grips.js";
import { GroupPanel } from "./group_panel.js";
import { Groups } from "./groups.js";
import { deviceToken, pairingKey } from "./identity.js";
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
import { seekBank } from "./commands.js";

document.documentElement.lang = isJapanese(navigator.languages) ? "ja" : "en";

const connection = new Connection(pairingKey());
const link = new Link((datagram) => connection.send(datagram), deviceToken());
const grips = new Grips(link);
const groups = new Groups(localStorage);

const sheet = new ModeSheet();
const status = new StatusBar(connection, link);
const map = new SessionMap(link);
const panel = new StripsPanel(link, grips, sheet);
const list = new SessionList(link, grips, groups);
const group = new GroupPanel(link, grips, groups, sheet);
const tools = new ToolBar(link, panel, list);

const session = make("div", { class: "tracks" }, list.element, group.element);
const main = make("main", {}, map.element, panel.element, session);
document.body.append(status.element, main, tools.element, status.veil, sheet.element, tools.sheet);

// ---- Drawing: at most once a frame, and only what may have changed.

let isDrawing = false;
let onlyMeters = true;

function drawSoon(meters = false) {
    onlyMeters &&= meters;
    if (isDrawing) return;
    isDrawing = true;
    requestAnimationFrame(draw);
}

function draw() {
    isDrawing = false;
    grips.flush();
    if (!tools.showsTracks) panel.updateMeters();
    if (!onlyMeters) drawAll();
    onlyMeters = true;
}

function drawAll() {
    const isUsable = link.inControl && !status.isElsewhere;
    status.update();
    main.inert = tools.element.inert = !isUsable;
    map.update();
    tools.update();
    if (!tools.showsTracks) return panel.update();
    list.update();
    group.update();
}

grips.onChange = () => drawSoon();
panel.onPages = () => drawSoon();
group.onChange = list.onMember = () => drawSoon();
list.onJump = (index) => {
    link.command(seekBank(index));
    tools.show(false);
};
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
link.onMessage = (message) => drawSoon(message.type === "meters");
link.onLetGo = () => grips.dropAll();

setInterval(() => {
    if (status.isElsewhere) return;
    link.tick();
    if (link.state === "lost" && connection.isSuspect) connection.open();
    drawSoon(); // the round trip
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
keepScreenOn();
useThisTab();
document.addEventListener("contextmenu", (event) => event.preventDefault());
