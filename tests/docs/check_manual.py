#!/usr/bin/env python3
"""Holds the manual against the programs: check_manual.py PROGRAMS_FOLDER PAGE...

Every ```recipe block of a page runs as written in a sample night of its own; one whose first line is "# NAME.recipe"
is saved under that name, and with variables only saved, unless a comment "<!-- with NAME=VALUE -->" stands before it.
Every ```sh block runs there, too; where a ```text block follows it at once, that is what it prints. Links lead to
files and headings that are there. The table of steps is the program's own. Pages that are followed at the screen, and
those about frames that do not come with the program ("<!-- needs other frames -->"), are checked for links alone.
"""
import os
import re
import subprocess
import sys
import tempfile

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
BLOCK = re.compile(r"(?:<!-- with ([^>]*?) -->\n\n?)?^```(\w*)\n(.*?)^```$", re.M | re.S)

programs = os.path.abspath(sys.argv[1])
faults = []


def fault(page, line, text):
    faults.append(f"{os.path.relpath(page, ROOT)}:{line}: {text}")


def run(command, folder):
    done = subprocess.run(["bash", "-ec", command], cwd=folder, capture_output=True, text=True,
                          env={**os.environ, "PATH": programs + ":" + os.environ["PATH"]})
    return done.returncode, done.stdout, done.stderr


def check_blocks(page, text):
    blocks = [(m.group(1), m.group(2), m.group(3), text.count("\n", 0, m.start(2)) + 1, m) for m in
              BLOCK.finditer(text)]
    if not any(kind in ("recipe", "sh") for _, kind, *_ in blocks):
        return
    with tempfile.TemporaryDirectory() as folder:
        run("halmek-night .", folder)
        for (values, kind, body, line, match), following in zip(blocks, blocks[1:] + [None]):
            if kind == "recipe":
                named = re.match(r"# (\S+\.recipe)\n", body)
                name = named.group(1) if named else "example.recipe"
                with open(os.path.join(folder, name), "w", encoding="utf-8") as file:
                    file.write(body)
                if values is None and re.search(r"\$\w|\$\{", body):
                    continue
                status, _, errors = run(f"halmek-batch {name} {values or ''}", folder)
                if status != 0 or errors:
                    fault(page, line, f"status {status}: {errors.strip()}")
            elif kind == "sh":
                status, printed, errors = run(body, folder)
                if status != 0 or errors:
                    fault(page, line, f"status {status}: {errors.strip()}")
                if following and following[1] == "text" and not text[match.end():following[4].start()].strip() \
                        and printed != following[2]:
                    fault(page, following[3], f"it prints\n{printed}")


def anchors(path):
    with open(path, encoding="utf-8") as file:
        headings = re.findall(r"^#+ (.*)$", file.read(), re.M)
    plain = [re.sub(r"[^\w\- ]", "", re.sub(r"\[(.*?)\]\(.*?\)", r"\1", h)).lower().replace(" ", "-") for h in headings]
    return set(plain)


def check_links(page, text):
    prose = re.sub(r"^```.*?^```$", lambda m: "\n" * m.group(0).count("\n"), text, flags=re.M | re.S)
    for match in re.finditer(r"\]\(([^)\s]+)\)", prose):
        line = prose.count("\n", 0, match.start()) + 1
        target, _, anchor = match.group(1).partition("#")
        path = os.path.join(os.path.dirname(page), target) if target else page
        if not os.path.exists(path):
            fault(page, line, f"there is no {target}")
        elif anchor and anchor not in anchors(path):
            fault(page, line, f"{target or 'the page'} has no heading #{anchor}")


def check_steps(page, text):
    between = re.search(r"<!-- steps -->\n\n(.*?)\n<!-- end of steps -->", text, re.S)
    if between is None:
        return
    table = subprocess.run([os.path.join(ROOT, "scripts/step-table"), os.path.join(programs, "halmek-batch")],
                           capture_output=True, text=True, check=True).stdout
    if between.group(1) != table:
        fault(page, text.count("\n", 0, between.start()) + 1, "the steps are others now: scripts/step-table prints them")
    # Somebody who looks for a step wants to see it at work.
    examples = "".join(m.group(3) for m in BLOCK.finditer(text) if m.group(2) == "recipe")
    for step in re.findall(r"^\| `([a-z-]+(?: (?:auto|points|again|mask|row|column))?)", table, re.M):
        if not re.search(rf"^{step}\b", examples, re.M):
            fault(page, 1, f"there is no example of {step}")


for page in sys.argv[2:]:
    page = os.path.abspath(page)
    with open(page, encoding="utf-8") as file:
        text = file.read()
    check_links(page, text)
    check_steps(page, text)
    if "<!-- needs other frames -->" not in text and "<!-- do\n" not in text:
        check_blocks(page, text)
print("\n".join(faults) or f"{len(sys.argv) - 2} pages hold")
sys.exit(1 if faults else 0)
