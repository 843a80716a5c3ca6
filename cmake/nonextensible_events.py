"""Marks the event interfaces of a type library nonextensible, in place: widl refuses that attribute on a dispinterface.

usage: nonextensible_events.py FILE.tlb
"""

import struct
import sys

# The file begins with a header and one offset for each type; then comes a table of segments, whose first segment holds
# a record for each type.
HEADER_SIZE = 0x54
HELP_LIBRARY = 0x100  # in the header's flags: the header is four bytes longer
HEADER_FLAGS_AT = 0x14
TYPE_COUNT_AT = 0x20
TYPE_SIZE = 0x64
TYPE_FLAGS_AT = 0x30

KIND_MASK = 0xF
DISPINTERFACE = 4
DUAL = 0x40
NONEXTENSIBLE = 0x80


def number_at(library, place):
    return struct.unpack_from("<I", library, place)[0]


def mark_events(library):
    """Sets the flag of each event interface, where there are any: of the dispinterfaces that are no dual interfaces."""
    places = HEADER_SIZE + (4 if number_at(library, HEADER_FLAGS_AT) & HELP_LIBRARY else 0)
    count = number_at(library, TYPE_COUNT_AT)
    types = number_at(library, places + 4 * count)
    for record in range(types, types + count * TYPE_SIZE, TYPE_SIZE):
        flags = number_at(library, record + TYPE_FLAGS_AT)
        if number_at(library, record) & KIND_MASK == DISPINTERFACE and not flags & DUAL:
            struct.pack_into("<I", library, record + TYPE_FLAGS_AT, flags | NONEXTENSIBLE)


def main(path):
    with open(path, "rb") as file:
        library = bytearray(file.read())
    if library[:4] != b"MSFT":
        sys.exit(f"{path} is no type library")
    mark_events(library)
    with open(path, "wb") as file:
        file.write(library)


if __name__ == "__main__":
    main(sys.argv[1])
