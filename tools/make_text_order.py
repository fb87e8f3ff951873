#!/usr/bin/env python3
"""Writes the tables of the order of texts, src/text/TextOrder{Table,BasicPlane,OtherPlanes}.cpp, from ICU 72's Chinese
order by pinyin. Another order needs another kTextOrderVersion in src/text/TextOrder.h.

Usage: tools/make_text_order.py src/text
"""

import ctypes
import pathlib
import sys
import unicodedata

ICU = 72
COMMON_SECONDARY = 0x0500
SURROGATES = range(0xD800, 0xE000)
HANGUL = range(0xAC00, 0xD7A4)
HANGUL_LETTERS = range(0x1100, 0x1200)
# Special primaries of ICU: what has none of its own, and the two that follow everything.
UNASSIGNED_LEAD = 0xFE
LAST_LEAD = 0xFF

# The layout of an entry, as src/text/TextOrderTable.h describes it.
FIRST_UNLISTED = 0x40000
LAST_PRIMARY = 0x1FFFFF
SECONDARY_SHIFT = 21
EXPANSION = 0x1FF << SECONDARY_SHIFT
LENGTH_BITS = 5
STARTS = 1 << 30
JOINS = 1 << 31
UNLISTED = EXPANSION
MOST_CONTRACTED = 3
BLOCK = 64
COLUMNS = 116


class Icu:
    """The collation elements of ICU: (primary, secondary) pairs of a text."""

    def __init__(self):
        self.i18n = ctypes.CDLL(f"libicui18n.so.{ICU}")
        self.uc = ctypes.CDLL(f"libicuuc.so.{ICU}")
        self.status = ctypes.c_int(0)
        self.collator = self.pointer(self.i18n, "ucol_open", b"zh-u-co-pinyin", ctypes.byref(self.status))
        self.iterator = self.pointer(self.i18n, "ucol_openElements", self.collator, b"a\0", 1,
                                     ctypes.byref(self.status))
        if self.status.value > 0:
            sys.exit(f"ICU's Chinese order cannot be opened: error {self.status.value}")

    @staticmethod
    def pointer(library, name, *arguments):
        function = getattr(library, f"{name}_{ICU}")
        function.restype = ctypes.c_void_p
        return ctypes.c_void_p(function(*arguments))

    def elements(self, text):
        units = text.encode("utf-16-le", "surrogatepass")
        buffer = ctypes.create_string_buffer(units, len(units) + 2)
        set_text, step = (getattr(self.i18n, f"{name}_{ICU}") for name in ("ucol_setText", "ucol_next"))
        set_text(self.iterator, buffer, len(units) // 2, ctypes.byref(self.status))
        found = []
        while (order := step(self.iterator, ctypes.byref(self.status))) != -1:
            primary, secondary, tertiary = order >> 16 & 0xFFFF, order >> 8 & 0xFF, order & 0xFF
            # An element too long for 32 bits comes in two, the second marked in its tertiary byte.
            if tertiary & 0xC0 == 0xC0 and found:
                found[-1] = (found[-1][0] | primary, found[-1][1] | secondary)
            else:
                found.append((primary << 16, secondary << 8))
        return tuple(element for element in found if element != (0, 0))

    def contractions(self):
        """The texts of several characters that have elements of their own."""
        texts = self.pointer(self.uc, "uset_openEmpty")
        status = ctypes.byref(self.status)
        getattr(self.i18n, f"ucol_getContractionsAndExpansions_{ICU}")(self.collator, texts, None, ctypes.c_int8(1),
                                                                      status)
        buffer = ctypes.create_string_buffer(64)
        first, last = ctypes.c_int32(), ctypes.c_int32()
        get_item = getattr(self.uc, f"uset_getItem_{ICU}")
        for i in range(getattr(self.uc, f"uset_getItemCount_{ICU}")(texts)):
            length = get_item(texts, i, ctypes.byref(first), ctypes.byref(last), buffer, 32, status)
            if length > 0:
                yield buffer.raw[:2 * length].decode("utf-16-le")


def is_left_out(contraction):
    """ICU's own marks of an index, and the names of cities: both original databases compare Chinese characters one by
    one."""
    return ord(contraction[0]) in (0xFDD0, 0xFDD1) or contraction[0] in "沈\uF972藏重"


class Table:
    def __init__(self, icu):
        self.characters = {code: icu.elements(chr(code)) for code in range(0x110000) if code not in SURROGATES}
        self.contractions = {}
        texts = [text for text in icu.contractions() if not is_left_out(text)]
        # ICU also contracts a letter with a mark behind other marks. Here the usual ones are listed: decomposed letters.
        decomposed = [unicodedata.normalize("NFD", text) for text in [*texts, *map(chr, self.characters)]]
        for text in texts + [text for text in decomposed if len(text) == MOST_CONTRACTED]:
            elements = icu.elements(text)
            apart = tuple(element for c in text for element in self.characters[ord(c)])
            if elements != apart:
                self.contractions[text] = elements
        self.check()
        self.rank()
        self.expansions = []
        self.places = {}
        self.entries = {code: self.entry(elements) for code, elements in self.characters.items()
                        if code not in HANGUL and elements[:1] != () and elements[0][0] >> 24 != UNASSIGNED_LEAD}
        self.entries |= {code: 0 for code, elements in self.characters.items() if elements == ()}
        for text in self.contractions:
            self.entries[ord(text[0])] |= STARTS
            for c in text[1:]:
                self.entries[ord(c)] |= JOINS

    def check(self):
        """What src/text/TextOrder.cpp takes for granted."""
        for code in HANGUL:
            lead, rest = divmod(code - HANGUL[0], 588)
            vowel, trail = divmod(rest, 28)
            letters = [0x1100 + lead, 0x1161 + vowel] + [0x11A7 + trail] * (trail > 0)
            assert self.characters[code] == tuple(self.characters[letter][0] for letter in letters)
        assert all(len(self.characters[letter]) == 1 for letter in HANGUL_LETTERS)
        for elements in map(self.characters.get, range(128)):
            assert elements == () or len(elements) == 1 and elements[0][1] == COMMON_SECONDARY
        for text in self.contractions:
            assert 2 <= len(text) <= 3
            assert all(ord(c) >= 128 for c in text[1:])
            assert ord(text[0]) >= 128 or ord(text[1]) < 0x400
            assert not any(ord(c) in HANGUL for c in text)

    def rank(self):
        everything = [element for elements in self.characters.values() for element in elements]
        everything += [element for elements in self.contractions.values() for element in elements]
        primaries = sorted({primary for primary, _ in everything if 0 < primary >> 24 < UNASSIGNED_LEAD})
        last = sorted({primary for primary, _ in everything if primary >> 24 == LAST_LEAD})
        secondaries = sorted({secondary for _, secondary in everything})
        assert len(primaries) < FIRST_UNLISTED
        assert len(secondaries) < 0x1FF
        self.primaries = {primary: i + 1 for i, primary in enumerate(primaries)}
        self.primaries |= {primary: LAST_PRIMARY - len(last) + 1 + i for i, primary in enumerate(last)}
        self.primaries[0] = 0
        # From 1; the common one, which nearly all have, is written as 0.
        self.secondaries = {secondary: i + 1 for i, secondary in enumerate(secondaries)}
        self.common = self.secondaries[COMMON_SECONDARY]
        self.secondaries[COMMON_SECONDARY] = 0
        assert all(secondary != COMMON_SECONDARY for primary, secondary in everything if primary == 0)

    def element(self, element):
        return self.primaries[element[0]] | self.secondaries[element[1]] << SECONDARY_SHIFT

    def place(self, elements):
        """Where these elements stand among the expansions, with their number."""
        if elements not in self.places:
            self.places[elements] = len(self.expansions) << LENGTH_BITS | len(elements)
            self.expansions += [self.element(element) for element in elements]
        return self.places[elements]

    def entry(self, elements):
        return self.element(elements[0]) if len(elements) == 1 else EXPANSION | self.place(elements)

    def hangul_endings(self):
        for vowel in range(0x1161, 0x1161 + 21):
            for trail in range(0x11A7, 0x11A7 + 28):
                yield self.entries[vowel]
                yield self.entries[trail] if trail > 0x11A7 else 0

    def blocks(self, codes, leading):
        """An index with a block's number for each 64 characters, and the blocks; the first ones lie as they come."""
        index, data, numbers = [], [], {}
        for start in range(codes.start, codes.stop, BLOCK):
            block = tuple(self.entries.get(code, UNLISTED) for code in range(start, start + BLOCK))
            if block not in numbers or len(index) < leading:
                numbers[block] = len(data) // BLOCK
                data += block
            index.append(numbers[block])
        return index, data


def array(type_name, name, values):
    lines, line = [], ""
    for value in values:
        piece = f"{value:#x}," if len(f"{value:#x}") < len(str(value)) else f"{value},"
        if len(line) + len(piece) > COLUMNS:
            lines.append(line)
            line = ""
        line += piece
    lines.append(line)
    body = "\n".join("    " + line for line in lines)
    return f"const {type_name} {name}[] = {{\n{body}\n}};\n"


def write(folder, name, *parts):
    text = ("// Written by tools/make_text_order.py.\n"
            '#include "text/TextOrderTable.h"\n\n'
            "namespace kpTables::text {\n\n"
            "// clang-format off\n" + "\n".join(parts) + "// clang-format on\n\n"
            "}  // namespace kpTables::text\n")
    (folder / name).write_text(text, encoding="utf-8")


def main():
    folder = pathlib.Path(sys.argv[1])
    table = Table(Icu())
    contractions = [f"    {{{{{', '.join(f'{ord(c):#x}' for c in text.ljust(3, chr(0)))}}}, "
                    f"{table.place(elements)}}},"
                    for text, elements in sorted(table.contractions.items(), key=lambda item: item[0].ljust(3, chr(0)))]
    write(folder, "TextOrderTable.cpp",
          f"const std::uint32_t kCommonSecondary = {table.common};\n",
          array("std::uint32_t", "kExpansions", table.expansions),
          array("std::uint32_t", "kHangulEndings", table.hangul_endings()),
          "const Contraction kContractions[] = {\n" + "\n".join(contractions) + "\n};\n",
          f"const std::size_t kContractionCount = {len(contractions)};\n")
    for name, codes, leading in (("BasicPlane", range(0x10000), 2), ("OtherPlanes", range(0x10000, 0x110000), 0)):
        index, data = table.blocks(codes, leading)
        write(folder, f"TextOrder{name}.cpp", array("std::uint16_t", f"k{name}Index", index),
              array("std::uint32_t", f"k{name}", data))


main()
