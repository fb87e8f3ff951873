#!/usr/bin/env python3
"""Writes src/text/CaseMappingTable.h: Unicode's simple case mappings, as ICU has them.

Usage: tools/make_case_mapping.py > src/text/CaseMappingTable.h
"""

import ctypes

ICU = 72
COLUMNS = 120


def runs(mapping):
    """(first, last, delta, step): longest runs with one delta, of every character or of every second one."""
    found = []
    for code, target in mapping:
        delta = target - code
        if found and found[-1][2] == delta:
            first, last, _, step = found[-1]
            if code - last == step or (first == last and code - last == 2):
                found[-1] = (first, code, delta, code - last)
                continue
        found.append((code, code, delta, 1))
    return found


def array(name, mapping):
    lines, line = [], "   "
    for first, last, delta, step in runs(mapping):
        piece = f" {{0x{first:04X}, 0x{last:04X}, {delta}, {step}}},"
        if len(line) + len(piece) > COLUMNS:
            lines.append(line)
            line = "   "
        line += piece
    return f"inline constexpr CaseRun {name}[] = {{\n" + "\n".join(lines + [line]) + "\n};"


def main():
    icu = ctypes.CDLL(f"libicuuc.so.{ICU}")
    fold = getattr(icu, f"u_foldCase_{ICU}")
    maps = {"kUpperRuns": getattr(icu, f"u_toupper_{ICU}"), "kLowerRuns": getattr(icu, f"u_tolower_{ICU}"),
            "kFoldRuns": lambda code: fold(code, 0)}
    print("// Written by tools/make_case_mapping.py.")
    print("#pragma once\n")
    print("#include <cstdint>\n")
    print("namespace kpTables::text {\n")
    print("/// Every step-th character from first to last has the mapping that lies delta behind it.")
    print("struct CaseRun {")
    print("    char32_t first;")
    print("    char32_t last;")
    print("    std::int32_t delta;")
    print("    std::uint32_t step;")
    print("};\n")
    print("// clang-format off")
    for name, map_case in maps.items():
        print(array(name, [(code, map_case(code)) for code in range(0x80, 0x110000) if map_case(code) != code]))
    print("// clang-format on\n")
    print("}  // namespace kpTables::text")


main()
