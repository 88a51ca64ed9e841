-- Shows the client protocol of the Lumbrine receiver in Wireshark and tshark, and the MIDI packets of a recording that
-- "lumbrine-blackbox pcap" has written:
--     tshark -X lua_script:lumbrine.lua -r evening.pcapng
-- docs/protocol.md describes each message; the tables here are its tables, word by word.

local from_client = {
    [0x00] = { "Hello", "nothing, or the device token (8)" },
    [0x01] = { "FaderMove", "strip, fader value" },
    [0x02] = { "FaderTouch", "strip" },
    [0x03] = { "FaderRelease", "strip" },
    [0x04] = { "MutePress", "strip" },
    [0x05] = { "SoloPress", "strip" },
    [0x06] = { "RecArmPress", "strip" },
    [0x07] = { "VpotDelta", "strip, clicks" },
    [0x08] = { "PanModeToggle", "" },
    [0x09] = { "PanSeek", "strip, ring position" },
    [0x0A] = { "BankMove", "move" },
    [0x0B] = { "SeekBank", "session index" },
    [0x0C] = { "Recalibrate", "" },
    [0x0D] = { "SelectPress", "strip" },
    [0x0E] = { "InputMonitorToggle", "strip" },
    [0x0F] = { "SetAutoMode", "strip, mode key" },
    [0x20] = { "GroupAutoMode", "mode key, count, session indices" },
    [0x21] = { "GroupMute", "on, count, session indices" },
    [0x22] = { "GroupSolo", "on, count, session indices" },
    [0x23] = { "GroupFaders", "count, pairs of session index and fader value" },
    [0x24] = { "VisibleRange", "session index, count" },
    [0x25] = { "TakeOver", "" },
}
local from_receiver = {
    [0x10] = { "TrackName", "strip, name (4)" },
    [0x11] = { "Meters", "left and right level of each" },
    [0x12] = { "Fader", "strip, fader value" },
    [0x13] = { "Switches", "mute, solo and record of each" },
    [0x14] = { "Pan", "strip, side, ring position, centre flag" },
    [0x15] = { "PanMode", "side" },
    [0x16] = { "BankPos", "session index, track count (2), shown strips (1)" },
    [0x17] = { "Selects", "flag of each" },
    [0x18] = { "FullName", "strip, name" },
    [0x19] = { "Colors", "colour of each" },
    [0x1A] = { "InputMons", "flag of each" },
    [0x1B] = { "TrackRow", "see below" },
    [0x1C] = { "AutoModes", "mode of each" },
    [0x1D] = { "Transport", "playing flag, recording flag" },
    [0x1E] = { "SessAutoChunk", "session index, count, modes" },
    [0x1F] = { "SessPanChunk", "session index, count, pans" },
    [0x7D] = { "Busy", "" },
    [0x7F] = { "Pong", "" },
}

local names = {}
for code, message in pairs(from_client) do names[code] = message[1] end
for code, message in pairs(from_receiver) do names[code] = message[1] end

local protocol = Proto("lumbrine", "Lumbrine client protocol")
local fields = protocol.fields
fields.version = ProtoField.uint8("lumbrine.version", "Version", base.HEX)
fields.type = ProtoField.uint8("lumbrine.type", "Type", base.HEX, names)
fields.strip = ProtoField.uint8("lumbrine.strip", "Strip (from 0)")
fields.index = ProtoField.uint16("lumbrine.track", "Session index (from 0)")
fields.fader = ProtoField.uint16("lumbrine.fader", "Fader value")
fields.number = ProtoField.uint16("lumbrine.number", "Number")
fields.byte = ProtoField.uint8("lumbrine.byte", "Value")
fields.clicks = ProtoField.int8("lumbrine.clicks", "Clicks")
fields.token = ProtoField.uint64("lumbrine.token", "Device token", base.HEX)
fields.name = ProtoField.string("lumbrine.name", "Name")
fields.comment = ProtoField.string("lumbrine.comment", "Comment")
fields.colour = ProtoField.bytes("lumbrine.colour", "Colour")
fields.rest = ProtoField.bytes("lumbrine.rest", "More bytes")
fields.key_number = ProtoField.uint8("lumbrine.seal.key", "Key number", base.HEX)
fields.count = ProtoField.uint32("lumbrine.seal.count", "Count")
fields.seal = ProtoField.bytes("lumbrine.seal.seal", "Seal")
protocol.prefs.port = Pref.uint("UDP port", 52700, "The UDP port of the receiver")

-- A reader takes what it knows from the bytes of the body that are left, and returns how many it took.
local function one(field, size, label)
    return function(tree, bytes)
        if bytes:len() < size then return nil end
        local item = tree:add(field, bytes(0, size))
        if label then item:set_text(label .. ": " .. (size == 1 and bytes(0, 1):uint() or bytes(0, 2):uint())) end
        return size
    end
end

local function many(...)
    local readers = { ... }
    return function(tree, bytes)
        local used = 0
        while used < bytes:len() do
            for _, reader in ipairs(readers) do
                if used >= bytes:len() then return used end
                local taken = reader(tree, bytes(used))
                if not taken then return used end
                used = used + taken
            end
        end
        return used
    end
end

local function text(field, size)
    return function(tree, bytes)
        local length = math.min(size or bytes:len(), bytes:len())
        tree:add(field, bytes(0, length))
        return length
    end
end

local function counted(field)
    return function(tree, bytes)
        local length = bytes(0, 1):uint()
        if bytes:len() < 1 + length then return nil end
        if length > 0 then tree:add(field, bytes(1, length)) end
        return 1 + length
    end
end

local function byte(label) return one(fields.byte, 1, label) end

local strip = one(fields.strip, 1)
local index = one(fields.index, 2)
local fader = one(fields.fader, 2)
local colour = one(fields.colour, 4)

local readers = {
    ["strip"] = strip,
    ["fader value"] = fader,
    ["session index"] = index,
    ["session indices"] = many(index),
    ["pairs of session index and fader value"] = many(index, fader),
    ["clicks"] = one(fields.clicks, 1),
    ["ring position"] = byte("Ring position"),
    ["move"] = byte("Move"),
    ["mode key"] = byte("Mode key"),
    ["on"] = byte("On"),
    ["count"] = byte("Count"),
    ["side"] = byte("Side"),
    ["centre flag"] = byte("Centre"),
    ["playing flag"] = byte("Playing"),
    ["recording flag"] = byte("Recording"),
    ["track count (2)"] = one(fields.number, 2, "Tracks"),
    ["shown strips (1)"] = byte("Shown strips"),
    ["name (4)"] = text(fields.name, 4),
    ["name"] = text(fields.name),
    ["flag of each"] = many(byte("Flag")),
    ["mode of each"] = many(byte("Mode")),
    ["modes"] = many(byte("Mode")),
    ["pans"] = many(byte("Side"), byte("Ring position"), byte("Centre")),
    ["colour of each"] = many(colour),
    ["left and right level of each"] = many(byte("Left"), byte("Right")),
    ["nothing, or the device token (8)"] = one(fields.token, 8),
    ["mute, solo and record of each"] = many(byte("Mute"), byte("Solo"), byte("Record")),
}
local row = { index, byte("Fader is known"), fader, byte("Mute"), byte("Solo"), byte("Record"), colour,
    byte("Input monitor"), byte("Select"), counted(fields.name), counted(fields.comment) }

-- The readers of a body, as its description lists them.
local function readers_of(body)
    if body == "see below" then return row end
    if readers[body] then return { readers[body] } end
    local list = {}
    for part in body:gmatch("[^,]+") do
        list[#list + 1] = readers[part:gsub("^%s+", "")] or
            error("docs/protocol.md has a part that the dissector does not know: " .. part)
    end
    return list
end

local bodies = {}
for code, message in pairs(from_client) do bodies[code] = readers_of(message[2]) end
for code, message in pairs(from_receiver) do bodies[code] = readers_of(message[2]) end

local trailer_size = 16

local function has_trailer(bytes)
    local length = bytes:len()
    return length >= 2 + trailer_size and bytes(length - trailer_size, 3):bytes():tohex() == "FF5EA1"
end

function protocol.dissector(bytes, packet, root)
    if bytes:len() < 2 or bytes(0, 1):uint() ~= 1 then return 0 end
    local code = bytes(1, 1):uint()
    local sealed = has_trailer(bytes)
    local length = bytes:len() - (sealed and trailer_size or 0)
    local name = names[code] or "Unknown"
    packet.cols.protocol = "LUMBRINE"
    packet.cols.info = name .. (sealed and " (sealed)" or "")
    local tree = root:add(protocol, bytes(), "Lumbrine " .. name)
    tree:add(fields.version, bytes(0, 1))
    tree:add(fields.type, bytes(1, 1))
    local used = 2
    for _, reader in ipairs(bodies[code] or {}) do
        if used >= length then break end
        local taken = reader(tree, bytes(used, length - used))
        if not taken then break end
        used = used + taken
    end
    if used < length then tree:add(fields.rest, bytes(used, length - used)) end
    if sealed then
        local trailer = tree:add(protocol, bytes(length, trailer_size), "Seal")
        trailer:add(fields.key_number, bytes(length + 3, 1))
        trailer:add(fields.count, bytes(length + 4, 4), bytes(length + 4, 4):bitfield(0, 22))
        trailer:add(fields.seal, bytes(length + 8, 8))
    end
    return bytes:len()
end

local port
local function use_port()
    local ports = DissectorTable.get("udp.port")
    if port then ports:remove(port, protocol) end
    port = protocol.prefs.port
    ports:add(port, protocol)
end

protocol.prefs_changed = use_port
use_port()

-- A MIDI packet of a recording: surface, direction, bytes.
local midi = Proto("lumbrine_midi", "Lumbrine MIDI")
midi.fields.surface = ProtoField.uint8("lumbrine_midi.surface", "Surface (from 0)")
midi.fields.direction = ProtoField.uint8("lumbrine_midi.direction", "Direction", base.DEC,
    { [0] = "from Pro Tools", [1] = "to Pro Tools" })
midi.fields.bytes = ProtoField.bytes("lumbrine_midi.bytes", "MIDI", base.SPACE)

function midi.dissector(bytes, packet, root)
    if bytes:len() < 2 then return 0 end
    packet.cols.protocol = "MIDI"
    local arrow = bytes(1, 1):uint() == 0 and " from Pro Tools: " or " to Pro Tools: "
    packet.cols.info = "surface " .. (bytes(0, 1):uint() + 1) .. arrow .. bytes(2):bytes():tohex(true, " ")
    local tree = root:add(midi, bytes())
    tree:add(midi.fields.surface, bytes(0, 1))
    tree:add(midi.fields.direction, bytes(1, 1))
    if bytes:len() > 2 then tree:add(midi.fields.bytes, bytes(2)) end
    return bytes:len()
end

DissectorTable.get("wtap_encap"):add(wtap.USER0, midi)
