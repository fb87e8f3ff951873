#!/usr/bin/env python3
"""Writes src/text/CodePage936Table.cpp: one bit per character, set for the double-byte characters of code page 936.

Usage: tools/make_codepage936.py > src/text/CodePage936Table.cpp
"""

# The code page maps its three user-defined ranges (AAA1-AFFE, F8A1-FEFE, A140-A7A0) to these private-use characters;
# Python's codec leaves them out.
USER_DEFINED = range(0xE000, 0xE766)


def is_double_byte(code):
    if code in USER_DEFINED:
        return True
    try:
        return len(chr(code).encode("cp936")) == 2
    except UnicodeEncodeError:
        return False


def main():
    words = [sum(is_double_byte(64 * i + bit) << bit for bit in range(64)) for i in range(1024)]
    print("// Written by tools/make_codepage936.py.")
    print('#include "text/CodePage936Table.h"\n')
    print("namespace kpTables::text {\n")
    print("// clang-format off")
    print("const std::uint64_t kDoubleByte936[1024] = {")
    for i in range(0, 1024, 4):
        print("    " + " ".join(f"0x{word:016X}," for word in words[i:i + 4]))
    print("};")
    print("// clang-format on\n")
    print("}  // namespace kpTables::text")


main()
