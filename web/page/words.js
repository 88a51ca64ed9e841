// @ts-check
// Every text of the page, in English and Japanese.

/** @type {Record<string, [english: string, japanese: string]>} */
const texts = {
    connected: ["Connected", "接続中"],
    opening: ["Connecting…", "接続しています…"],
    closed: ["The computer does not answer – trying again", "コンピュータが応答しません – 再接続しています"],
    refused: ["Scan the code on the computer again", "コンピュータのコードをもう一度読み取ってください"],
    crowded: ["Too many pages are open – waiting", "開いているページが多すぎます – 待っています"],
    searching: ["Lumbrine does not answer", "Lumbrine が応答しません"],
    searchingHelp: [
        "Start Lumbrine on the studio's computer. If it lets in paired clients only, give lumbrine-web its key.",
        "スタジオのコンピュータで Lumbrine を起動してください。ペアリング済みのみ許可する設定なら、lumbrine-web に鍵を渡してください。",
    ],
    refusedHelp: [
        "The code that opened this page does not count any more. Lumbrine's window shows the new one.",
        "このページを開いたコードは無効になりました。新しいコードは Lumbrine のウインドウに表示されます。",
    ],
    closedHelp: [
        "Is this phone in the studio's network? Is the computer on, and lumbrine-web running?",
        "スタジオのネットワークに接続していますか。コンピュータと lumbrine-web は動いていますか。",
    ],
    lost: ["Lumbrine does not answer any more – trying again", "Lumbrine が応答しなくなりました – 再接続しています"],
    busy: ["Another device is in control", "別の端末が操作中です"],
    takenOver: ["Another device has taken over", "別の端末に切り替わりました"],
    elsewhere: ["Open in another tab of this browser", "このブラウザの別のタブで開いています"],
    noTracks: ["Connected – Pro Tools shows no tracks", "接続中 – Pro Tools のトラックがありません"],
    finding: ["Finding the tracks…", "トラックを探しています…"],
    takeOver: ["Take over", "操作を引き継ぐ"],
    useHere: ["Use this tab", "このタブを使う"],
    roundTrip: ["Round trip: median and worst, in milliseconds", "往復時間: 中央値と最大値 (ミリ秒)"],
    playing: ["Playing", "再生中"],
    recording: ["Recording", "録音中"],
    transport: ["Transport", "トランスポート"],
    on: ["on", "オン"],
    off: ["off", "オフ"],

    strips: ["Strips", "ストリップ"],
    tracks: ["Tracks", "トラック"],
    map: ["Map of the session", "セッションの全体図"],
    mapPlace: ["Tracks {0} to {1} of {2}", "{2} 本中 {0} – {1} 本目"],
    mapUnknown: ["unknown", "不明"],
    bankLeft: ["Bank left", "バンク左"],
    bankRight: ["Bank right", "バンク右"],
    channelLeft: ["Channel left", "チャンネル左"],
    channelRight: ["Channel right", "チャンネル右"],
    otherStrips: ["Other strips of the bank", "バンクの他のストリップ"],
    panSide: ["Side that pans turn", "パンで動かす側"],
    menu: ["More", "その他"],
    view: ["View", "表示"],

    strip: ["Strip {0}", "ストリップ {0}"],
    fader: ["{0}: fader", "{0}: フェーダー"],
    mute: ["{0}: mute", "{0}: ミュート"],
    solo: ["{0}: solo", "{0}: ソロ"],
    record: ["{0}: record", "{0}: 録音"],
    monitor: ["{0}: input monitor", "{0}: インプットモニター"],
    select: ["{0}: select", "{0}: 選択"],
    mode: ["{0}: automation {1} {2}", "{0}: オートメーション {1} {2}"],
    panLeft: ["{0}: left pan", "{0}: 左パン"],
    panOf: ["{0}: pan", "{0}: パン"],
    pan: ["{0}: pan {1}", "{0}: パン {1}"],
    panRight: ["{0}: right pan", "{0}: 右パン"],
    centre: ["centre", "中央"],
    unknown: ["unknown", "不明"],
    modeTitle: ["{0}: automation mode", "{0}: オートメーションモード"],
    read: ["Read", "リード"],
    touch: ["Touch", "タッチ"],
    latch: ["Latch", "ラッチ"],
    write: ["Write", "ライト"],
    autoOff: ["Off", "オフ"],
    trim: ["Trim", "トリム"],
    close: ["Close", "閉じる"],

    search: ["Search tracks", "トラックを検索"],
    trackList: ["Tracks of the session", "セッションのトラック"],
    noMatch: ["No track has this in its name or comment", "名前やコメントに該当するトラックがありません"],
    jump: ["Show on the strips", "ストリップに表示"],
    onStripsOnly: ["Tap the name first: this works on the strips' tracks", "先に名前をタップ: ストリップのトラックで使えます"],
    member: ["{0}: in group {1}", "{0}: グループ {1}"],
    group: ["Group {0}", "グループ {0}"],
    groups: ["Groups", "グループ"],
    groupFader: ["Group {0}: faders", "グループ {0}: フェーダー"],
    groupMute: ["Group {0}: mute", "グループ {0}: ミュート"],
    groupSolo: ["Group {0}: solo", "グループ {0}: ソロ"],
    groupMode: ["Group {0}: AUTO mode", "グループ {0}: AUTO モード"],
    groupEmpty: ["Tick tracks to put them into group {0}", "トラックを選ぶとグループ {0} に入ります"],
    members: ["{0} tracks", "{0} トラック"],
    clear: ["Empty group {0}", "グループ {0} を空にする"],

    readModes: ["Read modes and pans of these tracks", "表示中のモードとパンを読み取る"],
    rescan: ["Scan the session again", "セッションを再スキャン"],
    fullScreen: ["Full screen", "全画面表示"],
    leftHanded: ["Left-handed", "左利き"],
};

/** @typedef {(key: string, ...parts: (string | number)[]) => string} Say */

/** @param {readonly string[]} languages in the order in which the user prefers them */
export const isJapanese = (languages) => (languages[0] ?? "en").toLowerCase().startsWith("ja");

/** @param {boolean} japanese @returns {Say} */
export const sayIn = (japanese) => (key, ...parts) =>
    texts[key][japanese ? 1 : 0].replace(/\{(\d)\}/g, (_, place) => String(parts[Number(place)]));

export const say = sayIn(isJapanese(globalThis.navigator?.languages ?? ["en"]));
