#!/usr/bin/env python3
"""Writes the seeds of the fuzzers, those of this file and the recipes of recipes.txt beside it: FOLDER/READER/NAME
for each, and FOLDER/listing.tsv with the outcome that each must have, "accepted" or the text with which it is refused.
"""

import pathlib
import re
import struct
import sys


def card(keyword, value, rest=" /"):
    return f"{keyword:<8}= {value:>20}{rest}"


def header(*cards, end="END"):
    """Cards of 80 characters, END, and blanks up to a whole record of 2880."""
    text = "".join(f"{c:<80}"[:80] for c in cards) + end
    return (text + " " * (-len(text) % 2880)).encode("latin-1")


def cards(bitpix=16, columns=4, rows=3, *others):
    sizes = [card(f"NAXIS{i}", n) for i, n in ((1, columns), (2, rows)) if n is not None]
    return [card("SIMPLE", "T"), card("BITPIX", bitpix), card("NAXIS", len(sizes)), *sizes, *others]


def filled(count, *others):
    """As many cards in all, the rest comments."""
    some = cards(16, 4, 3, *others)
    return some + [f"COMMENT {i}" for i in range(count - len(some))]


def fits(bitpix=16, columns=4, rows=3, *others, data=bytes(range(200, 224)) * 4):
    return header(*cards(bitpix, columns, rows, *others)) + data


def spectrum(bitpix=16, *others, columns=6, rows=None, data=bytes(range(200, 224)) * 2):
    return fits(bitpix, columns, rows, *others, data=data)


def packed(form, *values):
    return b"".join(struct.pack(">" + form, v) for v in values)


def settings(change=None, line=0, count=30):
    """The file with the defaults, one line of which is changed, or of which only so many lines are left."""
    two = '500,500,"x"'
    four = '-500,500,14000,6000,"x"'
    lines = ['"title"', '1397,"bad column #"', "1,1,1748,140", '50,"a, b"', '0,"R"', '0,"M: 0=No"',
             two, two, four, *[two] * 6, *[four] * 9, *[two] * 5, "1,1,1748,140"]
    if change is not None:
        lines[line - 1] = change
    return "\r\n".join(lines[:count]) + "\r\n"


def mask(*lines, title="Mask data for line identification.  Peak column; tabular wavelength (Angstroms)."):
    return "\r\n".join([title, *lines]) + "\r\n"


def error(number, text):
    return f"Error: {number}  {text}"


OK = "accepted"
NO_FITS = "This is not a fits file!  Please try again."
NO_END = "This FITS header has no END card.  Please try again."
NO_PIXELS = "This FITS file has no pixels.  Please try again."
NOT_8 = "Sorry, this program does not support 8-bit integer data.  Convert to 16-bit unsigned."
NOT_1D = "Hey, this is not a 1-D file!  Please try again."
NO_TYPE = "Sorry, this program does not support this pixel type.  Convert to 32-bit real."
NOT_DAO = "Sorry, this program does not support DAO frames other than 16-bit.  Load it as a FITS file."
NOT_64 = "Sorry, this program does not support 64-bit integer data.  Convert to 32-bit real."
NO_ENTRY = "Wavelength file 'input' was not loaded: line 2 is not a number followed by a label."
NO_MASK = "This is not a mask file for this program.  Please try again."
SUBSCRIPT = error(9, "Subscript out of range.")
OVERFLOW = error(6, "Error: Overflow.")
TOO_SHORT = error(62, "Error: Input past end of file.")
INVALID = error(321, "Error: Invalid file format.")
NO_QUOTES = error(5, "")

NAN, INFINITY = float("nan"), float("inf")
ODD_BYTES = bytes([0, 0, 0x7F, 0xFF, 0x80, 0, 0xFF, 0xFF]) * 6
ODD_REALS = packed("f", 1, -2, NAN, INFINITY, -INFINITY, 5e-9, 1e-45, 3e38, 65535, 32768, -0.0, 1.5)
ODD_DOUBLES = packed("d", 1, -2, NAN, INFINITY, -INFINITY, 5e-9, 5e-324, 1.7e308, 65535, 1e39, 4e38, 1 / 3)

SEEDS = [
    ("frame", "integer16", fits(), OK),
    ("frame", "unsigned16", fits(16, 4, 6, card("BZERO", "32768."), data=ODD_BYTES), OK),
    ("frame", "unsigned16_other_zero", fits(16, 4, 6, card("BZERO", "-1.5E0"), data=ODD_BYTES), OK),
    ("frame", "integer32", fits(32, 4, 3, data=ODD_BYTES), OK),
    ("frame", "real32", fits(-32, 4, 3, data=ODD_REALS), OK),
    ("frame", "real64", fits(-64, 4, 3, data=ODD_DOUBLES), OK),
    ("frame", "scaled", fits(16, 4, 3, card("BSCALE", "2.5")), OK),
    ("frame", "cards35_third_record_missing", header(*filled(71)) + bytes(23), TOO_SHORT),
    ("frame", "cards200", header(*filled(200)) + bytes(24), OK),
    ("frame", "cards201", header(*filled(201)) + bytes(24), SUBSCRIPT),
    ("frame", "no_end", header(*filled(36), end="") + bytes(24), NO_END),
    ("frame", "end_first", header(end="END") + bytes(24), NO_FITS),
    ("frame", "end_in_the_middle", header(*cards()[:3], "END", *cards()[3:]) + bytes(24), NO_PIXELS),
    ("frame", "end_not_at_a_card", header(*filled(10), end="    END") + bytes(24), NO_END),
    ("frame", "end_with_text", header(*filled(10), end="END     = T") + bytes(24), OK),
    ("frame", "carriage_return_before_end", header(*cards(16, 4, 3, "COMMENT \r")) + bytes(24), NO_END),
    ("frame", "bits64", fits(64), NOT_64),
    ("frame", "bits8", fits(8), NOT_8),
    ("frame", "bits_broken", fits("16.5"), NO_TYPE),
    ("frame", "columns0", fits(16, 0), NO_PIXELS),
    ("frame", "columns3001", fits(16, 3001, 1, data=bytes(6002)), SUBSCRIPT),
    ("frame", "rows501", fits(16, 1, 501, data=bytes(1002)), SUBSCRIPT),
    ("frame", "data_short_by_one", fits(data=bytes(23)), TOO_SHORT),
    ("frame", "empty", b"", TOO_SHORT),
    ("frame", "object_latin", fits(16, 4, 3, "OBJECT  = '\xc5ngstr\xf6m \xff'"), OK),
    ("frame", "object_of_one_character", fits(16, 4, 3, "OBJECT  = A"), NO_QUOTES),
    ("frame", "object_no_quotes", fits(16, 4, 3, "OBJECT  = AB"), OK),
    ("dao", "unsigned", fits(16, 4, 6, data=ODD_BYTES), OK),
    ("dao", "negative_zero_point", fits(16, 4, 6, card("BZERO", "-32768"), data=ODD_BYTES), OK),
    ("dao", "real32", fits(-32, 4, 3, data=ODD_REALS), NOT_DAO),
    ("spectrum", "columns3000", spectrum(columns=3000, data=bytes(6000)), OK),
    ("spectrum", "integer16", spectrum(), OK),
    ("spectrum", "real32", spectrum(-32, columns=12, data=ODD_REALS), OK),
    ("spectrum", "row1", spectrum(rows=1), OK),
    ("spectrum", "rows2", spectrum(rows=2), NOT_1D),
    ("spectrum", "rows_1_5", spectrum(rows="1.5"), NOT_1D),
    ("table", "three", "header\r\n5852.488,Ne I\r\n 6402.248 ,\"Ne, I\"\r\n6965.431,\r\n", OK),
    ("table", "empty", "", "Wavelength file 'input' was not loaded: there are no entries."),
    ("table", "entries1000", "h\n" + "5000.5,a\n" * 1000, OK),
    ("table", "entries1001", "h\n" + "5000.5,a\n" * 1001, "Wavelength file 'input' was not loaded: there are more than 1000 entries."),
    ("table", "latin_name", "h\n5000,\xc5ng \xff\xe9\n", OK),
    ("table", "no_label", "h\n5000\n", NO_ENTRY),
    ("table", "three_fields", "h\n5000,Ne,I\n", NO_ENTRY),
    ("mask", "one", mask(" 8.25  5000.5 "), OK),
    ("mask", "quoted_title", "\"Mask, of ours\"\n8 5000\n", OK),
    ("mask", "lower_case", "mask\n8,5000\n", NO_MASK),
    ("mask", "byte_order_mark", b"\xef\xbb\xbfMask\n8 5000\n", OK),
    ("mask", "title_only", "Mask\n", TOO_SHORT),
    ("mask", "lines50", mask(*[f" {i}.5  5000.123456789 " for i in range(50)]), OK),
    ("mask", "lines51", mask(*[f" {i}.5  5000.123456789 " for i in range(51)]), SUBSCRIPT),
    ("mask", "one_number", mask("8 5000", "9"), INVALID),
    ("mask", "huge", mask("1.7976931348623157E308 -1E-320"), OK),
    ("mask", "no_number", mask("eight 5000"), INVALID),
    ("settings", "whole", settings(), OK),
    ("settings", "lines10", settings(count=10), TOO_SHORT),
    ("settings", "too_large", settings('32768,0,"x"', 7), OVERFLOW),
    ("settings", "no_label", settings("500,500", 7), TOO_SHORT),
    ("settings", "too_many", settings('500,500,"x",1', 7), INVALID),
    ("recipe_text", "byte_order_mark", b"\xef\xbb\xbfcrunch\r\n", OK),
    ("recipe_text", "control_character",
     "load frame a\x07b\n", "1: the line holds a character that no text has"),
]


def main():
    folder = pathlib.Path(sys.argv[1])
    # Each recipe stands below a line "== READER NAME: OUTCOME".
    text = pathlib.Path(__file__).with_name("recipes.txt").read_text()
    recipes = [(reader, name, recipe, outcome) for reader, name, outcome, recipe in
               re.findall(r"^== (\w+) (\w+): (.*)\n((?:(?!== ).*\n)*)", text, re.M)]
    lines = []
    for reader, name, contents, outcome in SEEDS + recipes:
        (folder / reader).mkdir(parents=True, exist_ok=True)
        data = contents if isinstance(contents, bytes) else contents.encode("latin-1")
        (folder / reader / name).write_bytes(data)
        lines.append(f"{reader}\t{name}\t{outcome}\n")
    (folder / "listing.tsv").write_text("".join(lines), encoding="latin-1")


main()
