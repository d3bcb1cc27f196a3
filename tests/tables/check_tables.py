#!/usr/bin/env python3
"""Checks the wavelength tables of share/tables against the energy levels of the atoms.

A line's wavelength must follow from the difference of its two levels (the Ritz principle). levels.csv has the
levels' energies in cm-1 as published. A level without an energy is placed where its lines put it; then its
lines check one another, each against the energy that the others give (the combination principle).
transitions.csv says which two levels make each line; it holds more lines than the tables, since every further
line of a level checks that level. unchecked.csv has the lines of the tables that have no such check, and why
they are kept.

Vacuum wavelengths become those in standard air by the dispersion formula of Peck & Reeder (1972). What is
printed must stand in the page of the manual, too. The exit code is 1 if anything fails.
"""

import collections
import csv
import re
import sys
from pathlib import Path

HERE = Path(__file__).resolve().parent
ROOT = HERE.parent.parent

# Largest |table - levels| in Angstrom. Helium's triplets are blends, and mercury's lines those of its isotopes. Nearly
# all lines of copper and mercury lie 0.003 to 0.007 above their levels, so that the limit of these two is wider.
TOLERANCE = {"He I": 0.005, "Ne I": 0.004, "Ar I": 0.004, "Ar II": 0.003, "Fe I": 0.003, "Cu I": 0.007,
             "Cd I": 0.003, "Hg I": 0.007}
ELEMENTS = {"cu": ("Cu I",), "fe": ("Fe I",), "ne": ("Ne I",), "he": ("He I",), "hg": ("Hg I",), "cd": ("Cd I",),
            "ar": ("Ar I", "Ar II")}
SHORTEST, LONGEST, MOST_ENTRIES = 3200, 9305, 1000

failures, printed = [], []


def fail(text):
    failures.append(text)


def say(text=""):
    print(text)
    printed.append(text)


def check_page(path):
    """Every line printed so far must stand in the manual's page as it is."""
    page = path.read_text().splitlines()
    for line in printed:
        if line not in page:
            fail("%s does not say: %s" % (path.name, line))


def index_of_air(vacuum):
    """Peck & Reeder (1972), standard air: 15 C, 101325 Pa, dry, with 0.03 per cent of carbon dioxide."""
    s = (1e4 / vacuum) ** 2
    return 1 + 1e-8 * (8060.51 + 2480990 / (132.274 - s) + 17455.7 / (39.32957 - s))


def air_wavelength(wavenumber):
    return 1e8 / wavenumber / index_of_air(1e8 / wavenumber)


def wavenumber_of(air):
    vacuum = air
    for _ in range(5):
        vacuum = air * index_of_air(vacuum)
    return 1e8 / vacuum


def rows(name):
    with open(HERE / name, newline="") as file:
        return list(csv.DictReader(file))


class Line:
    def __init__(self, row):
        self.key = (row["species"], row["wavelength"])
        self.species, self.wavelength = row["species"], float(row["wavelength"])
        self.levels = [(row["species"], row[end]) for end in ("lower", "upper")]

    def __str__(self):
        return "%s %.3f" % (self.species, self.wavelength)


class Atoms:
    def __init__(self):
        self.spin, self.parity, self.energy, self.placed = {}, {}, {}, set()
        for row in rows("levels.csv"):
            level = (row["species"], row["designation"])
            if level in self.spin:
                fail("two levels %s %s" % level)
            self.spin[level], self.parity[level] = float(row["J"]), row["parity"]
            if row["energy"]:
                self.energy[level] = float(row["energy"])
            else:
                self.placed.add(level)
        self.lines = [Line(row) for row in rows("transitions.csv")]
        self.of_level = collections.defaultdict(list)
        for line in self.lines:
            for level in line.levels:
                if level not in self.spin:
                    sys.exit("%s: levels.csv has no %s %s" % (line, *level))
                self.of_level[level].append(line)

    def place_levels(self):
        """Puts each level without a published energy at the mean of what its lines say, until nothing moves."""
        for _ in range(200):
            for level in self.placed:
                said = []
                for line in self.of_level[level]:
                    lower, upper = line.levels
                    other, sign = (lower, 1) if level == upper else (upper, -1)
                    if other in self.energy:
                        said.append(self.energy[other] + sign * wavenumber_of(line.wavelength))
                if said:
                    self.energy[level] = sum(said) / len(said)
        for level in sorted(self.placed):
            if len(self.of_level[level]) < 2:
                fail("%s %s has no published energy and fewer than two lines" % level)

    def deviation(self, line):
        """Table minus levels; for a line of a placed level, minus what the level's other lines say."""
        lower, upper = (self.energy[level] for level in line.levels)
        found = line.wavelength - air_wavelength(upper - lower)
        others = [len(self.of_level[level]) for level in line.levels if level in self.placed]
        return found * max((n / (n - 1) for n in others if n > 1), default=1)

    def check(self):
        for line in self.lines:
            lower, upper = line.levels
            if self.energy[upper] <= self.energy[lower]:
                fail("%s: its levels are the wrong way round" % line)
                continue
            if self.parity[lower] == self.parity[upper]:
                fail("%s joins two %s levels" % (line, self.parity[lower]))
            if abs(self.spin[lower] - self.spin[upper]) > 1 or self.spin[lower] == self.spin[upper] == 0:
                fail("%s: J %g to %g is no dipole transition" % (line, self.spin[lower], self.spin[upper]))
            off = self.deviation(line)
            if abs(off) > TOLERANCE[line.species]:
                fail("%s is %+.4f from its levels %s and %s" % (line, off, lower[1], upper[1]))


def read_table(path):
    """The (species, wavelength as text) of a table, after checks of its form."""
    text = path.read_bytes().decode("ascii")
    if not text.endswith("\r\n") or text.count("\n") != text.count("\r\n"):
        fail("%s: lines must end in CR LF" % path.name)
    heading, *entries = text.splitlines() or [""]
    if re.match(r"\s*[-+.\d]", heading):
        fail("%s: the heading looks like a number" % path.name)
    if len(entries) > MOST_ENTRIES:
        fail("%s: %d entries" % (path.name, len(entries)))
    allowed = [species for part in path.stem.split("-") for species in ELEMENTS[part]]
    found, last = [], 0
    for number, entry in enumerate(entries, 2):
        match = re.fullmatch(r'(\d{4}\.\d{3}),"(\w+ I+)"', entry)
        if not match:
            fail("%s, line %d: %s" % (path.name, number, entry))
            continue
        wavelength, species = match.groups()
        if species not in allowed:
            fail("%s, line %d: no %s in such a lamp" % (path.name, number, species))
        if not last < float(wavelength):
            fail("%s, line %d: not in ascending order, or twice" % (path.name, number))
        if not SHORTEST <= float(wavelength) <= LONGEST:
            fail("%s, line %d: out of range" % (path.name, number))
        last = float(wavelength)
        found.append((species, wavelength))
    if not found:
        fail("%s is empty" % path.name)
    return found


def check_agreement(keys):
    """No species may have two wavelengths for one line, whatever table they stand in."""
    keys = sorted(set(keys), key=lambda key: (key[0], float(key[1])))
    for (species, a), (next_species, b) in zip(keys, keys[1:]):
        if species == next_species and float(b) - float(a) < 0.05:
            fail("%s %s and %s are one line" % (species, a, b))


def check_lamp(path, atoms):
    """The lines of the sample night's lamp, where they are lines of transitions.csv."""
    lamp = re.findall(r'\{(\d+\.\d+), "([^"]+)"', path.read_text())
    met, worst = 0, 0.0
    for wavelength, species in lamp:
        near = [line for line in atoms.lines
                if line.species == species and abs(line.wavelength - float(wavelength)) < 0.05]
        if not near:
            continue
        met += 1
        line = min(near, key=lambda line: abs(line.wavelength - float(wavelength)))
        off = float(wavelength) - line.wavelength + atoms.deviation(line)
        worst = max(worst, abs(off))
        if abs(off) > 0.01 or wavelength != line.key[1]:
            fail("%s: %s %s is %+.4f from its levels; transitions.csv has %s"
                 % (path.name, species, wavelength, off, line.key[1]))
    say("The lamp of the sample night: %d lines, %d of them checked, largest deviation %.4f Angstrom"
        % (len(lamp), met, worst))


def print_species(atoms):
    say("| species | lines | rms | largest | limit | levels | of them with two lines or more | "
        "placed by their lines |")
    say("|---|---:|---:|---:|---:|---:|---:|---:|")
    for species, limit in TOLERANCE.items():
        off = [atoms.deviation(line) for line in atoms.lines if line.species == species]
        used = [level for level in atoms.spin if level[0] == species and atoms.of_level[level]]
        shared = sum(len(atoms.of_level[level]) > 1 for level in used)
        placed = sum(level in atoms.placed for level in used)
        say("| %s | %d | %.4f | %.4f | %.3f | %d | %d | %d |"
            % (species, len(off), (sum(o * o for o in off) / len(off)) ** 0.5, max(map(abs, off)), limit,
               len(used), shared, placed))
    say()


def main():
    atoms = Atoms()
    atoms.place_levels()
    atoms.check()
    print_species(atoms)

    lines = {line.key: line for line in atoms.lines}
    unchecked = {(row["species"], row["wavelength"]) for row in rows("unchecked.csv")}
    for key in sorted(unchecked & set(lines)):
        fail("%s %s is both in transitions.csv and in unchecked.csv" % key)
    if len(lines) != len(atoms.lines):
        fail("transitions.csv has a line twice")

    every = []
    say("| table | lines | by two published levels | of them with other lines at both levels | "
        "with a level placed by its lines | unchecked |")
    say("|---|---:|---:|---:|---:|---:|")
    tables = sorted((ROOT / "share" / "tables").glob("*.txt"))
    if not tables:
        fail("there are no tables")
    for path in tables:
        keys = read_table(path)
        every += keys
        counts = collections.Counter()
        for key in keys:
            if key in lines:
                levels = lines[key].levels
                counts["placed" if set(levels) & atoms.placed else "published"] += 1
                counts["firm"] += (not set(levels) & atoms.placed
                                   and all(len(atoms.of_level[level]) > 1 for level in levels))
            elif key in unchecked:
                counts["unchecked"] += 1
            else:
                fail("%s: %s %s is neither in transitions.csv nor in unchecked.csv" % (path.name, *key))
        say("| %s | %d | %d | %d | %d | %d |"
            % (path.name, len(keys), counts["published"], counts["firm"], counts["placed"], counts["unchecked"]))
    for key in sorted(unchecked - set(every)):
        fail("unchecked.csv: no table has %s %s" % key)
    check_agreement(every + list(lines))
    say()
    check_lamp(ROOT / "src" / "night" / "lamp_lines.cpp", atoms)
    check_page(ROOT / "docs" / "wavelength-tables.md")
    for failure in failures:
        print("FAILED: " + failure)
    sys.exit(1 if failures else 0)


main()
