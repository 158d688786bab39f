#!/usr/bin/env python3
"""Makes tools/tavcc/unicode_widths.h of Unicode's data, as Debian's package unicode-data has it.

usage: unicode-widths.py [FOLDER] > tools/tavcc/unicode_widths.h

A character is two columns wide where EastAsianWidth.txt calls it wide or fullwidth, and none where
UnicodeData.txt calls it a non-spacing or enclosing mark or a format character, or where it is a
vowel or final of a Hangul syllable, which is drawn with the consonant before it.
"""

import os
import re
import sys

FOLDER = sys.argv[1] if len(sys.argv) > 1 else "/usr/share/unicode"
SOFT_HYPHEN = 0xAD  # a format character that is drawn


def lines(name):
    with open(os.path.join(FOLDER, name), encoding="utf-8") as file:
        return file.read().splitlines()


def wide():
    codes = set()
    # The ranges whose characters are wide also where none is assigned yet stand in comments.
    for line in lines("EastAsianWidth.txt"):
        match = (re.match(r"([0-9A-F]+)(?:\.\.([0-9A-F]+))?\s*;\s*[WF]\b", line) or
                 re.match(r"#\s+.*: U\+([0-9A-F]+)\.\.U\+([0-9A-F]+)$", line))
        if match:
            first = int(match.group(1), 16)
            codes.update(range(first, int(match.group(2) or match.group(1), 16) + 1))
    return codes


def without_width():
    codes, first = set(), None
    for line in lines("UnicodeData.txt"):
        code, name, category = line.split(";")[:3]
        code = int(code, 16)
        if name.endswith(", First>"):
            first = code
            continue
        if category in ("Mn", "Me", "Cf") and code != SOFT_HYPHEN:
            codes.update(range(first if first is not None else code, code + 1))
        first = None
    for first, last in ((0x1160, 0x11FF), (0xD7B0, 0xD7FB)):
        codes.update(range(first, last + 1))
    return codes


def ranges(codes):
    out = []
    for code in sorted(codes):
        if out and out[-1][1] == code - 1:
            out[-1][1] = code
        else:
            out.append([code, code])
    return out


def table(name, codes):
    print(f"inline constexpr CodeRange {name}[] = {{")
    line = "   "
    for first, last in ranges(codes):
        entry = f" {{0x{first:04X}, 0x{last:04X}}},"
        if len(line) + len(entry) > 100:
            print(line)
            line = "   "
        line += entry
    print(line)
    print("};\n")


version = re.search(r"-([\d.]+)\.txt", lines("EastAsianWidth.txt")[0]).group(1)
print(f"""// Which characters take two columns of a terminal, and which none: Unicode {version}.
//
// Made by scripts/unicode-widths.py; do not edit.
#pragma once

#include <cstdint>

namespace tavcc {{

struct CodeRange {{
  uint32_t first, last;
}};

// clang-format off
// In ascending order.""")
narrow = without_width()
table("kWideCharacters", wide() - narrow)
table("kZeroWidthCharacters", narrow)
print("""// clang-format on

}  // namespace tavcc""")
