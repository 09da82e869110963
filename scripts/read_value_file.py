#!/usr/bin/env python3
"""Reads a value file (.hvf) without any of this project's code, from docs/value_files.md alone,
and prints its variables as JSON:

    scripts/read_value_file.py FILE [VARIABLE]

A value becomes {"class": ..., "dims": [...], "value": ...}: text as a string, logical and
numeric data as flat lists in column-major order, cells as lists of values (null for an empty
element), structures as lists of {field: value} objects, one per element.
"""

import json
import struct
import sys
import zlib

MAGIC = b"\x89HVF\r\n\x1a\n"
CLASSES = {1: "cell", 2: "struct", 3: "logical", 4: "char", 5: "double", 6: "int8", 7: "uint8",
           8: "int16", 9: "uint16", 10: "int32", 11: "uint32", 12: "int64", 13: "uint64"}
NUMERIC = {"double": "d", "int8": "b", "uint8": "B", "int16": "h", "uint16": "H", "int32": "i",
           "uint32": "I", "int64": "q", "uint64": "Q"}


class MessagePack:
    """The part of MessagePack that value files use: nil, unsigned integers, str, bin, array."""

    def __init__(self, data):
        self.data, self.at = data, 0

    def take(self, n):
        if self.at + n > len(self.data):
            raise ValueError("truncated content")
        chunk = self.data[self.at:self.at + n]
        self.at += n
        return chunk

    def big_endian(self, n):
        return int.from_bytes(self.take(n), "big")

    def next(self):
        tag = self.take(1)[0]
        if tag <= 0x7F:
            return tag
        if 0x90 <= tag <= 0x9F:
            return [self.next() for _ in range(tag & 0x0F)]
        if 0xA0 <= tag <= 0xBF:
            return self.take(tag & 0x1F).decode("utf-8", "surrogateescape")
        if tag == 0xC0:
            return None
        sizes = {0xCC: 1, 0xCD: 2, 0xCE: 4, 0xCF: 8}
        if tag in sizes:
            return self.big_endian(sizes[tag])
        strings = {0xD9: 1, 0xDA: 2, 0xDB: 4}
        if tag in strings:
            return self.take(self.big_endian(strings[tag])).decode("utf-8", "surrogateescape")
        binaries = {0xC4: 1, 0xC5: 2, 0xC6: 4}
        if tag in binaries:
            return bytes(self.take(self.big_endian(binaries[tag])))
        arrays = {0xDC: 2, 0xDD: 4}
        if tag in arrays:
            return [self.next() for _ in range(self.big_endian(arrays[tag]))]
        raise ValueError(f"tag 0x{tag:02x} has no place in a value file")


def host_value(packed):
    """A decoded [class, dims, payload] triple as a plain object; None stays None."""
    if packed is None:
        return None
    number, dims, payload = packed
    name = CLASSES[number]
    if name == "char":
        value = payload
    elif name == "logical":
        value = [byte != 0 for byte in payload]
    elif name in NUMERIC:
        value = list(struct.unpack(f"<{len(payload) // struct.calcsize(NUMERIC[name])}"
                                   f"{NUMERIC[name]}", payload))
    elif name == "cell":
        value = [host_value(element) for element in payload]
    else:
        fields, values = payload
        value = [{field: host_value(values[e * len(fields) + f]) for f, field in enumerate(fields)}
                 for e in range(len(values) // len(fields) if fields else 0)]
    return {"class": name, "dims": dims, "value": value}


def read_value_file(path):
    """The variables of a value file, by name."""
    with open(path, "rb") as file:
        data = file.read()
    if len(data) < 32 or data[:8] != MAGIC:
        raise ValueError("not a value file")
    version, flags, uncompressed, compressed = struct.unpack("<HHQQ", data[8:28])
    if version != 1 or flags != 0 or compressed != len(data) - 32:
        raise ValueError("a value file of another version, or damaged")
    content = zlib.decompress(data[28:28 + compressed])
    (crc,) = struct.unpack("<I", data[-4:])
    if len(content) != uncompressed or zlib.crc32(content) != crc:
        raise ValueError("damaged content")
    reader, variables = MessagePack(content), {}
    while reader.at < len(content):
        name, value = reader.next()
        variables[name] = host_value(value)
    return variables


def main():
    if len(sys.argv) not in (2, 3):
        sys.exit(__doc__)
    variables = read_value_file(sys.argv[1])
    shown = variables if len(sys.argv) == 2 else variables[sys.argv[2]]
    json.dump(shown, sys.stdout, indent=1)
    print()


if __name__ == "__main__":
    main()
