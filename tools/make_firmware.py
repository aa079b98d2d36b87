#!/usr/bin/env python3
"""Makes a firmware file for trying downloads: whole sectors of counting bytes for a class of devices."""

import argparse

HEADER_BYTES = 128
BLOCKS = 512


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("file")
    parser.add_argument("--class", dest="class_type", default="22", help="class and type of the device, hex (default 22)")
    parser.add_argument("--sectors", default="1,2,3", help="numbers, ascending (default 1,2,3)")
    arguments = parser.parse_args()
    content = bytearray(HEADER_BYTES)
    content[:16] = b"Kv-NET DOWNLOAD\0"
    content[18] = int(arguments.class_type, 16)
    for sector in map(int, arguments.sectors.split(",")):
        for block in range(BLOCKS):
            content += bytes((sector << 4 | block >> 8, block & 0xFF))
            content += bytes((sector + block + place) & 0xFF for place in range(32))
    with open(arguments.file, "wb") as file:
        file.write(content)


if __name__ == "__main__":
    main()
