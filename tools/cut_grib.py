#!/usr/bin/env python3
"""Cuts fields out of a GRIB edition 2 file.

Usage: cut_grib.py IN OUT FIELD... [--inventory LIST]

FIELD is DISCIPLINE.CATEGORY.NUMBER:TYPE[:VALUE] with the numbers of WMO's code tables: the type of the first surface,
and its value in the table's unit, left out for any. 0.3.5:100:50000 is the height of the 500 mb surface, 0.3.1:101 the
pressure at mean sea level. #3 is the field with number 3 in the file, counted from 0; "all" takes every field.

A message of which every field is wanted is copied byte by byte. Out of a message with other fields too each wanted one
becomes a message of its own, made of its unchanged sections.

With --inventory the rows of these fields are taken out of a list of fields (tab-separated, columns "file" and "field"
first, a heading on top) and printed with their new file name and numbers.

Needs only Python's standard library.
"""

import argparse
import struct
import sys
from pathlib import Path


def messages(data):
    """Start and end of each message of edition 2."""
    at = data.find(b"GRIB")
    while at >= 0:
        if data[at + 7 : at + 8] == b"\x02":
            end = at + struct.unpack(">Q", data[at + 8 : at + 16])[0]
            if data[end - 4 : end] != b"7777":
                sys.exit(f"cut_grib: no end of the message at byte {at}")
            yield at, end
            at = data.find(b"GRIB", end)
        else:
            at = data.find(b"GRIB", at + 4)


def fields(message):
    """Sections 1 to 7 of each field of a message, by number; a section that isn't repeated holds for the next field too."""
    current = {}
    at = 16
    while message[at : at + 4] != b"7777":
        length, number = struct.unpack(">IB", message[at : at + 5])
        section = message[at : at + length]
        # Bit map 254: the one before.
        if number != 6 or section[5] != 254:
            current[number] = section
        at += length
        if number == 7:
            yield dict(current)


def signed(value, bits):
    """GRIB's numbers keep the sign in the first bit."""
    sign = 1 << (bits - 1)
    return -(value - sign) if value & sign else value


def surface(product):
    """Type and value of the first surface of section 4, the value None where it is missing."""
    kind, scale, value = struct.unpack(">BBI", product[22:28])
    if scale == 255 or value == 0xFFFFFFFF:
        return kind, None
    return kind, signed(value, 32) * 10.0 ** -signed(scale, 8)


class Selection:
    """One FIELD of the command line."""

    def __init__(self, text):
        self.text = text
        self.number = int(text[1:]) if text.startswith("#") else None
        if self.number is not None or text == "all":
            return
        parameter, _, level = text.partition(":")
        kind, _, value = level.partition(":")
        self.parameter = tuple(int(word) for word in parameter.split("."))
        self.kind = int(kind) if kind else None
        self.value = float(value) if value else None

    def takes(self, number, discipline, product):
        if self.number is not None or self.text == "all":
            return self.number in (None, number)
        kind, value = surface(product)
        return (
            self.parameter == (discipline, product[9], product[10])
            and self.kind in (None, kind)
            and (self.value is None or (value is not None and abs(self.value - value) < 1e-6))
        )


def own_message(head, sections):
    """A message of one field: the first 8 bytes of its old one, the new length, its sections."""
    body = b"".join(sections[number] for number in sorted(sections))
    return head[:8] + struct.pack(">Q", 16 + len(body) + 4) + body + b"7777"


def cut(data, wanted):
    """The new file, and the old numbers of its fields."""
    out = bytearray()
    taken = []
    number = 0
    for start, end in messages(data):
        message = data[start:end]
        parts = list(fields(message))
        chosen = [i for i, part in enumerate(parts) if wanted(number + i, message[6], part[4])]
        if len(chosen) == len(parts):
            out += message
        else:
            for i in chosen:
                out += own_message(message, parts[i])
        taken += [number + i for i in chosen]
        number += len(parts)
    return bytes(out), taken


def print_rows(path, source, target, taken):
    """The rows of the taken fields in the order of the new file."""
    rows = {}
    for line in path.read_text().splitlines():
        words = line.split("\t")
        if words[0] == source:
            rows[int(words[1])] = words[2:]
    for new, old in enumerate(taken):
        print("\t".join([target, str(new)] + rows[old]))


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("source", type=Path, metavar="IN")
    parser.add_argument("target", type=Path, metavar="OUT")
    parser.add_argument("field", nargs="+", metavar="FIELD")
    parser.add_argument("--inventory", type=Path, metavar="LIST")
    options = parser.parse_args()
    selections = [Selection(text) for text in options.field]
    unused = set(selections)

    def wanted(number, discipline, product):
        found = [one for one in selections if one.takes(number, discipline, product)]
        unused.difference_update(found)
        return bool(found)

    out, taken = cut(options.source.read_bytes(), wanted)
    if unused:
        missing = " ".join(sorted(one.text for one in unused))
        sys.exit(f"cut_grib: not in {options.source}: {missing}")
    options.target.write_bytes(out)
    if options.inventory:
        print_rows(options.inventory, options.source.name, options.target.name, taken)
    print(f"{options.target}: {len(taken)} fields, {len(out)} bytes", file=sys.stderr)


if __name__ == "__main__":
    main()
