#!/usr/bin/env python3
"""Prints the sealed examples of docs/protocol.md, computed by Python's hmac."""
import hashlib
import hmac

DIGITS = "0123456789ABCDEFGHJKMNPQRSTVWXYZ"
LETTERS = "742BCM0SCXPZA154Z02S9P89HC"
TOKEN = bytes.fromhex("5B1E900DCAFE0007")
CLIENT_HALF = bytes.fromhex("1122334455667788")
RECEIVER_HALF = bytes.fromhex("99AABBCCDDEEFF00")
TO_RECEIVER, TO_CLIENT, FOR_SESSION, FOR_NUMBER = b"\0", b"\1", b"\2", b"\3"


def hash_of(key, text):
    return hmac.new(key, text, hashlib.sha256).digest()


def key_of(letters):
    number = 0
    for letter in letters:
        number = number * 32 + DIGITS.index(letter)
    return number.to_bytes(16, "big")


def sealed(key, direction, count, eighths, message):
    sequence = (count << 10 | eighths % 1024).to_bytes(4, "big")
    seal = hash_of(key, direction + TOKEN + sequence + message)[:8]
    return message + b"\xFF\x5E\xA1" + NUMBER + sequence + seal


PAIRING = key_of(LETTERS)
NUMBER = hash_of(PAIRING, FOR_NUMBER)[:1]
SESSION = hash_of(PAIRING, FOR_SESSION + TOKEN + CLIENT_HALF + RECEIVER_HALF)

if __name__ == "__main__":
    print("key        ", PAIRING.hex(" ").upper())
    print("key number ", NUMBER.hex().upper())
    print("session key", SESSION.hex(" ").upper())
    for name, datagram in [
        ("opening", sealed(PAIRING, TO_RECEIVER, 0, 77, b"\1\0" + TOKEN + CLIENT_HALF)),
        ("session", sealed(PAIRING, TO_CLIENT, 0, 9, b"\1\x7E" + CLIENT_HALF + RECEIVER_HALF)),
        ("hello", sealed(SESSION, TO_RECEIVER, 1, 78, b"\1\0" + TOKEN)),
        ("pong", sealed(SESSION, TO_CLIENT, 1, 10, b"\1\x7F")),
        ("move", sealed(SESSION, TO_RECEIVER, 2, 95, b"\1\1\3\x3F\xFF")),
    ]:
        print(f"{name:11}", datagram.hex(" ").upper())
