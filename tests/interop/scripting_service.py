#!/usr/bin/env python3
"""A scripting service on the Python gRPC package, for tests of the link against a server that shares no code with it.

Prints "listening PORT" when it is ready and a line for each command. Every process gives sessions of its own and
refuses the commands of any other.
"""
import argparse
import json
import time
import uuid
from concurrent import futures

import grpc

TRACK_LIST, REGISTER, MUTE, SOLO, INPUT_MONITOR = 3, 70, 85, 86, 90
COMPLETED, FAILED = 3, 4


def varint(value):
    out = bytearray()
    while value > 0x7F:
        out.append(value & 0x7F | 0x80)
        value >>= 7
    out.append(value)
    return bytes(out)


def length_delimited(field, payload):
    return varint(field << 3 | 2) + varint(len(payload)) + payload


def fields(message):
    """Field numbers to values: integers, or bytes."""
    found, at = {}, 0

    def read_varint():
        nonlocal at
        value = shift = 0
        while True:
            byte = message[at]
            at += 1
            value |= (byte & 0x7F) << shift
            if byte < 0x80:
                return value
            shift += 7

    while at < len(message):
        tag = read_varint()
        value = read_varint()
        if tag & 7 == 2:
            found[tag >> 3], at = message[at:at + value], at + value
        else:
            found[tag >> 3] = value
    return found


def response(command, status, reply="", error=""):
    header = varint(2 << 3) + varint(command) + varint(3 << 3) + varint(status)
    message = length_delimited(1, header)
    if reply:
        message += length_delimited(2, reply.encode())
    if error:
        message += length_delimited(3, error.encode())
    return message


class Session:
    def __init__(self, count):
        self.id = str(uuid.uuid4())
        self.tracks = [{"name": f"トラック {i}", "index": i, "type": "Audio", "id": f"{{{i}}}", "color": "#ff336699",
                        "track_attributes": {"is_hidden": "TAState_None", "is_selected": "TAState_None",
                                             "is_input_monitoring_on": "TAState_None", "is_muted": False,
                                             "is_soloed": False, "is_record_enabled": False}}
                       for i in range(1, count + 1)]

    def set(self, arguments, attribute, value):
        for track in self.tracks:
            if track["name"] in arguments["track_names"]:
                track["track_attributes"][attribute] = value

    def run(self, command, session, arguments):
        if command == REGISTER:
            return response(command, COMPLETED, json.dumps({"session_id": self.id}))
        if session != self.id:
            return response(command, FAILED, error='{"errors":[{"command_error_message":"unknown session"}]}')
        if command == TRACK_LIST:
            page = arguments["pagination_request"]
            shown = self.tracks[page["offset"]:page["offset"] + page["limit"]]
            return response(command, COMPLETED, json.dumps({"track_list": shown}, ensure_ascii=False))
        if command == MUTE:
            self.set(arguments, "is_muted", arguments["enabled"])
        elif command == SOLO:
            self.set(arguments, "is_soloed", arguments["enabled"])
        elif command == INPUT_MONITOR:
            self.set(arguments, "is_input_monitoring_on",
                     "TAState_SetExplicitly" if arguments["enabled"] else "TAState_None")
        else:
            return response(command, FAILED, error='{"errors":[{"command_error_type":133}]}')
        return response(command, COMPLETED)


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--port", type=int, default=0)
    parser.add_argument("--tracks", type=int, default=8)
    parser.add_argument("--stall", action="store_true", help="never answer a track list")
    parser.add_argument("--unknown", action="store_true", help="know no method at all")
    parser.add_argument("--message", type=int, help="answer everything with a message of that many bytes")
    options = parser.parse_args()
    session = Session(options.tracks)

    def send_grpc_request(request, context):
        if options.message is not None:
            return bytes(i % 251 for i in range(options.message))
        envelope = fields(request)
        header = fields(envelope[1])
        print("command", header[2], flush=True)
        if options.stall and header[2] == TRACK_LIST:
            time.sleep(60)
        return session.run(header[2], header.get(4, b"").decode(), json.loads(envelope.get(2, b"{}")))

    server = grpc.server(futures.ThreadPoolExecutor(max_workers=4), options=[("grpc.so_reuseport", 0)])
    if not options.unknown:
        method = grpc.unary_unary_rpc_method_handler(send_grpc_request)  # messages stay bytes
        server.add_generic_rpc_handlers(
            (grpc.method_handlers_generic_handler("ptsl.PTSL", {"SendGrpcRequest": method}),))
    port = server.add_insecure_port(f"127.0.0.1:{options.port}")
    server.start()
    print("listening", port, flush=True)
    server.wait_for_termination()


main()
