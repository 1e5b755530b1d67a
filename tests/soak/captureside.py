"""The capture process as the editor sees it: who owns a name on the session bus and is posted events."""
import collections
import os
import socket
import struct
import threading

NAME = "com.norvane.Tindra.Capture"
BUS = "org.freedesktop.DBus"
SILENT_CAPTURE_SAVED, CAPTURE_WANTED, PROGRAM_ENDS = 0x870, 0x868, 0x867
CALL = 1
PATH, INTERFACE, MEMBER, DESTINATION, SIGNATURE = 1, 2, 3, 6, 8  # fields of a message


def padded(content, size=8):
    return content + b"\0" * (-len(content) % size)


def text(value):
    return struct.pack("<I", len(value)) + value.encode() + b"\0"


def call(serial, member, body=b"", signature=""):
    """A call of the bus itself, in its wire format."""
    fields = b""
    for number, kind, value in ((PATH, "o", "/org/freedesktop/DBus"), (INTERFACE, "s", BUS), (MEMBER, "s", member),
                                (DESTINATION, "s", BUS), (SIGNATURE, "g", signature)):
        if value:
            held = bytes([len(value)]) + value.encode() + b"\0" if kind == "g" else text(value)
            fields = padded(fields) + bytes([number, 1]) + kind.encode() + b"\0" + held
    head = b"l" + bytes([CALL, 0, 1]) + struct.pack("<III", len(body), serial, len(fields))
    return padded(head + fields) + body


class CaptureSide:
    """Takes all events from its making on and counts them by their numbers."""

    def __init__(self):
        self.events = collections.Counter()
        path = next(part[5:] for part in os.environ["DBUS_SESSION_BUS_ADDRESS"].split(",")[0].split(":")
                    if part.startswith("path="))
        self.connection = socket.socket(socket.AF_UNIX)
        self.connection.connect(path)
        self.connection.sendall(b"\0AUTH EXTERNAL " + str(os.getuid()).encode().hex().encode() + b"\r\n")
        self.stream = self.connection.makefile("rb")
        greeting = self.stream.readline()
        assert greeting.startswith(b"OK"), f"the bus says {greeting}"
        name = padded(text(NAME), 4) + struct.pack("<I", 0)
        self.connection.sendall(b"BEGIN\r\n" + call(1, "Hello") + call(2, "RequestName", name, "su"))
        threading.Thread(target=self.listen, daemon=True).start()

    def listen(self):
        while head := self.stream.read(16):
            order = "<" if head[:1] == b"l" else ">"
            body_size, _, fields_size = struct.unpack(order + "III", head[4:])
            fields = self.stream.read(fields_size + -fields_size % 8)
            body = self.stream.read(body_size)
            if head[1] == CALL and b"\0Post\0" in fields:
                self.events[struct.unpack_from(order + "I", body)[0]] += 1
