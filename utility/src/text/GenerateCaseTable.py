#!/usr/bin/env python3
"""Writes CaseTable.inc: the case mappings of the code units that the library converts.

Usage: GenerateCaseTable.py [DIRECTORY] > CaseTable.inc

DIRECTORY holds UnicodeData.txt, SpecialCasing.txt and CaseFolding.txt of the Unicode Character
Database (default: /usr/share/unicode, where Debian's package unicode-data puts them).

The set of units is frozen, so that a text that was folded and stored once folds to the same key for
ever: a newer database may not add units, and the checks below stop the run if it changes the shape
of the table.
"""

import sys
from pathlib import Path

KEYS = """
0041..005A 0061..007A 00B5 00C0..00D6 00D8..00F6 00F8..0137 0139..017F 0181..018C 018E..0199
019C..019D 019F..01A9 01AC..01B9 01BC..01BD 01BF 01C4..021F 0222..0233 0253..0254 0256..0257 0259
025B 0260 0263 0268..0269 026F 0272 0275 0280 0283 0288 028A..028B 0292 0345 0386 0388..038A 038C
038E..03A1 03A3..03CE 03D0..03D1 03D5..03D6 03DA..03F2 0400..0481 048C..04BF 04C1..04C4 04C7..04C8
04CB..04CC 04D0..04F5 04F8..04F9 0531..0556 0561..0587 1E00..1E9B 1EA0..1EF9 1F00..1F15 1F18..1F1D
1F20..1F45 1F48..1F4D 1F50..1F57 1F59 1F5B 1F5D 1F5F..1F7D 1F80..1FB4 1FB6..1FBC 1FBE 1FC2..1FC4
1FC6..1FCC 1FD0..1FD3 1FD6..1FDB 1FE0..1FEC 1FF2..1FF4 1FF6..1FFC 2126 212A..212B 2160..217F
24B6..24E9 FB00..FB06 FB13..FB17 FF21..FF3A FF41..FF5A
"""

# Lower, upper and fold of the units that do not follow the database: all sigmas fold to the final
# one, both Turkish i fold to the plain one, and no mapping leaves the frozen set.
EXCEPTIONS = {
    0x0130: ([0x0069], [0x0130], [0x0069]),
    0x0131: ([0x0131], [0x0049], [0x0069]),
    0x03A3: ([0x03C3], [0x03A3], [0x03C2]),
    0x03C2: ([0x03C2], [0x03A3], [0x03C2]),
    0x03C3: ([0x03C3], [0x03A3], [0x03C2]),
    0x03F2: ([0x03F2], [0x03A3], [0x03C2]),
}

ROWS = 1446
EXPANDING_ROWS = 102
BLOCK = 64
DIRECT = 0x800  # units below it, those of most alphabets, are looked up without the first stage
EXPANSION = 0x8000  # a difference in [EXPANSION, EXPANSION + EXPANDING_ROWS) is an index
MAX_UNITS = 3


def check(condition, message):
    if not condition:
        sys.exit(f"GenerateCaseTable.py: {message}")


def parse_keys():
    for item in KEYS.split():
        first, _, last = item.partition("..")
        yield from range(int(first, 16), int(last or first, 16) + 1)


def fields(path):
    for line in path.read_text(encoding="utf-8").splitlines():
        line = line.partition("#")[0].strip()
        if line:
            yield [field.strip() for field in line.split(";")]


def units(text):
    return [int(unit, 16) for unit in text.split()]


def read_database(directory):
    lower, upper, fold = {}, {}, {}
    for row in fields(directory / "UnicodeData.txt"):
        code = int(row[0], 16)
        if row[12]:
            upper[code] = units(row[12])
        if row[13]:
            lower[code] = units(row[13])
    for row in fields(directory / "SpecialCasing.txt"):
        if len(row) > 4 and row[4]:
            continue  # it depends on the context or the language
        code = int(row[0], 16)
        lower[code], upper[code] = units(row[1]), units(row[3])
    for row in fields(directory / "CaseFolding.txt"):
        if row[1] in ("C", "F"):
            fold[int(row[0], 16)] = units(row[2])
    return lower, upper, fold


def build_rows(directory):
    keys = list(parse_keys())
    check(len(keys) == len(set(keys)) == ROWS, f"{len(keys)} rows instead of {ROWS}")
    database = read_database(directory)
    rows = {key: tuple(field.get(key, [key]) for field in database) for key in keys}
    rows.update(EXCEPTIONS)
    check(len(rows) == ROWS, "an exception is not in the frozen set")

    expanding = [key for key, (_, upper, fold) in rows.items() if len(upper) > 1 and len(fold) > 1]
    check(len(expanding) == EXPANDING_ROWS,
          f"{len(expanding)} rows expand instead of {EXPANDING_ROWS}")
    for key, (lower, upper, fold) in rows.items():
        check(len(lower) == 1, f"the lower case of {key:04X} expands")
        check((len(upper) > 1) == (len(fold) > 1), f"only one of upper and fold expands at {key:04X}")
        check(any(field != [key] for field in (lower, upper, fold)), f"{key:04X} maps to itself")
        for field in (lower, upper, fold):
            check(1 <= len(field) <= MAX_UNITS, f"{key:04X} maps to {len(field)} units")
            check(all(unit <= 0xFFFF for unit in field), f"{key:04X} leaves the 16-bit units")
            check(len(field) > 1 or field[0] in rows, f"{key:04X} maps to a unit outside the set")
    return rows


def print_values(values, width, per_line):
    for start in range(0, len(values), per_line):
        line = ", ".join(f"0x{value:0{width}X}" for value in values[start:start + per_line])
        print(f"    {line},")


def print_mapping(name, mappings):
    """Prints the two-stage table of one mapping: `mappings` gives the units of each key."""
    expanding = sorted(key for key, mapped in mappings.items() if len(mapped) > 1)
    differences = [0] * 0x10000
    for key, mapped in mappings.items():
        if len(mapped) == 1:
            differences[key] = (mapped[0] - key) & 0xFFFF
            check(not EXPANSION <= differences[key] < EXPANSION + EXPANDING_ROWS,
                  f"the difference of {key:04X} reads as an expansion")
        else:
            differences[key] = EXPANSION + expanding.index(key)

    blocks, index = [], []
    for start in range(0, 0x10000, BLOCK):
        block = differences[start:start + BLOCK]
        if start < DIRECT:
            blocks.append(block)
            index.append(len(blocks) - 1)
            continue
        if block not in blocks:
            blocks.append(block)
        index.append(blocks.index(block))
    check(len(blocks) <= 256, "the blocks do not fit a byte of index")

    print(f"\nconstexpr std::uint8_t k{name}Blocks[{len(index)}] = {{")
    print_values(index, 2, 16)
    print(f"}};\n\nconstexpr std::uint16_t k{name}Differences[{len(blocks) * BLOCK}] = {{")
    print_values([difference for block in blocks for difference in block], 4, 12)
    print("};")
    if expanding:
        print(f"\nconstexpr Expansion k{name}Expansions[{len(expanding)}] = {{")
        for key in expanding:
            mapped = mappings[key]
            padded = ", ".join(f"0x{unit:04X}" for unit in mapped + [0] * (MAX_UNITS - len(mapped)))
            print(f"    {{{len(mapped)}, {{{padded}}}}}, // {key:04X}")
        print("};")


def main():
    rows = build_rows(Path(sys.argv[1] if len(sys.argv) > 1 else "/usr/share/unicode"))
    print("// Written by GenerateCaseTable.py; run that instead of changing this.")
    print(f"\nconstexpr unsigned kBlockSize = {BLOCK};")
    print(f"constexpr std::uint16_t kDirectCount = 0x{DIRECT:04X};")
    print(f"constexpr std::uint16_t kFirstExpansion = 0x{EXPANSION:04X};")
    print(f"constexpr std::uint16_t kExpansionCount = {EXPANDING_ROWS};")
    for position, name in enumerate(("Lower", "Upper", "Fold")):
        print_mapping(name, {key: row[position] for key, row in rows.items()})


main()
