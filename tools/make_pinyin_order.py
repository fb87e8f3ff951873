#!/usr/bin/env python3
"""Writes src/engines/sqlite/PinyinOrderTable.h: the Chinese characters of code page 936 in the order that ICU 72 gives.

Usage: tools/make_pinyin_order.py > src/engines/sqlite/PinyinOrderTable.h
"""

import ctypes
import sys

CHARACTERS = [chr(code) for code in range(0x4E00, 0x9FA6)]
A_LINE = 56


def order():
    """A function that gives a character's sort key."""
    icu = ctypes.CDLL("libicui18n.so.72")
    status = ctypes.c_int(0)
    icu.ucol_open_72.restype = ctypes.c_void_p
    collator = ctypes.c_void_p(icu.ucol_open_72(b"zh-u-co-pinyin", ctypes.byref(status)))
    if status.value > 0:
        sys.exit(f"ICU's Chinese order cannot be opened: error {status.value}")

    def key(character):
        buffer = ctypes.create_string_buffer(64)
        icu.ucol_getSortKey_72(collator, character.encode("utf-16-le"), 1, buffer, len(buffer))
        return buffer.value

    return key


def main():
    characters = "".join(sorted(CHARACTERS, key=order()))
    lines = [f'    u"{characters[start:start + A_LINE]}"' for start in range(0, len(characters), A_LINE)]
    print("// Written by tools/make_pinyin_order.py.")
    print("#pragma once\n")
    print("#include <string_view>\n")
    print("namespace kpTables::sqlite {\n")
    print("// clang-format off")
    print("inline constexpr std::u16string_view kPinyinOrder =")
    print("\n".join(lines) + ";")
    print("// clang-format on\n")
    print("}  // namespace kpTables::sqlite")


main()
