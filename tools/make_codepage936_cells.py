#!/usr/bin/env python3
"""Writes src/text/CodePage936Cells.h: the characters of the double-byte codes of code page 936, as ICU maps them.

Usage: tools/make_codepage936_cells.py > src/text/CodePage936Cells.h
"""

import ctypes

ICU = 72
LEADS = range(0x81, 0xFF)
TRAILS = [trail for trail in range(0x40, 0xFF) if trail != 0x7F]
PRIVATE = range(0xE000, 0xF900)
A_LINE = 38


def characters():
    icu = ctypes.CDLL(f"libicuuc.so.{ICU}")
    codes = bytes(byte for lead in LEADS for trail in TRAILS for byte in (lead, trail))
    units = ctypes.create_string_buffer(2 * len(codes))
    status = ctypes.c_int(0)
    opened = getattr(icu, f"ucnv_open_{ICU}")
    opened.restype = ctypes.c_void_p
    converter = ctypes.c_void_p(opened(b"windows-936", ctypes.byref(status)))
    size = getattr(icu, f"ucnv_toUChars_{ICU}")(converter, units, len(codes), codes, len(codes), ctypes.byref(status))
    assert status.value <= 0 and size == len(LEADS) * len(TRAILS)
    return units.raw[:2 * size].decode("utf-16-le")


def main():
    text = characters()
    escaped = [f"\\u{ord(c):04X}" if ord(c) in PRIVATE or c.isspace() else c for c in text]
    lines = ["".join(escaped[start:start + A_LINE]) for start in range(0, len(escaped), A_LINE)]
    print("// Written by tools/make_codepage936_cells.py.")
    print("#pragma once\n")
    print("namespace kpTables::text {\n")
    print("/// By lead byte from 81 to FE, for each by trail byte from 40 to 7E and 80 to FE.")
    print("// clang-format off")
    print("inline constexpr char16_t kCells936[] =")
    print("\n".join(f'    u"{line}"' for line in lines) + ";")
    print("// clang-format on\n")
    print("}  // namespace kpTables::text")


main()
