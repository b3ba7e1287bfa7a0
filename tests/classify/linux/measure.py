#!/usr/bin/env python3
"""Measures what the rules say of the homes that homes.tsv lists.

    measure.py PROGRAM DISK FOLDER [--wrong] [USER...]

PROGRAM is ulvak_list_findings, DISK the library made of tests/desktop/disk.c that shows sparse
files as full, FOLDER where make_homes.py has built the homes. Prints, by user and in all, how
many GB programs have made there, what part of it has a rule's name, a right level, and no known
level, and how many places are dangerous: called safe or regenerable though they must not be.
With --wrong, also every place with a wrong, unknown or dangerous level. Places beyond the home
folder are left out: a scan of a home does not look at them.
"""

import os
import re
import subprocess
import sys
from pathlib import Path

from make_homes import PAYLOADS, below, is_file

EASY = {"safe", "regenerable"}


def findings(program: str, disk: str, home: Path) -> list:
    environment = {**os.environ, "HOME": str(home), "TMPDIR": str(home / ".none/T"),
                   "LD_PRELOAD": disk, "ULVAK_DISK_HOME": str(home), "ULVAK_DISK_HOLD": "/nonexistent"}
    for name in ("CACHE", "CONFIG", "DATA", "STATE"):
        environment.pop(f"XDG_{name}_HOME", None)
    text = subprocess.run([program], env=environment, check=True, stdout=subprocess.PIPE).stdout.decode()
    return [line.split("\t") for line in text.splitlines()]


def payload(home: Path, place: str, files: str) -> Path:
    """The big file of a place, which is what it weighs."""
    path = below(home, place)
    if is_file(place):
        return path
    return path / next(name for pattern, name in PAYLOADS if re.search(pattern, f"{place}\t{files}"))


def verdict(found: dict, path: Path) -> tuple:
    """Of the finding that holds a file, if there is one."""
    while path != path.parent:
        if str(path) in found:
            return found[str(path)]
        path = path.parent
    return ("none", "", "", "")


class Sums:
    def __init__(self):
        self.made = self.named = self.right = self.unknown = self.user = self.user_right = self.dangerous = 0

    def add(self, size: int, right: set, made: str, level: str, source: str) -> bool:
        good = level in right or (level == "none" and size < 50)
        self.dangerous += level in EASY and not right & EASY
        if made != "program":
            self.user += size
            self.user_right += size if good or level == "none" else 0
            return not good and level != "none"
        self.made += size
        self.named += size if source == "rule" and level not in ("unknown", "none") else 0
        self.right += size if good else 0
        self.unknown += size if level in ("unknown", "none") and not good else 0
        return not good

    def line(self, user: str) -> str:
        share = lambda part, whole: f"{100 * part / whole if whole else 0:7.1f} %"
        return (f"{user:10} {self.made / 1024:8.0f} GB {share(self.named, self.made)} {share(self.right, self.made)}"
                f" {share(self.unknown, self.made)} {share(self.user_right, self.user)} {self.dangerous:10}")


def main() -> None:
    arguments = [a for a in sys.argv[1:] if a != "--wrong"]
    if len(arguments) < 3:
        sys.exit(__doc__)
    program, disk, folder, *users = arguments
    homes = {}
    table = Path(__file__).with_name("homes.tsv").read_text(encoding="utf-8")
    for line in table.splitlines()[1:]:
        row = line.split("\t")
        if row[1].startswith("~"):
            homes.setdefault(row[0], []).append(row)
    print(f"{'user':10} {'made':>11} {'named':>9} {'right':>9} {'unknown':>9} {'own right':>9} {'dangerous':>10}")
    every = Sums()
    for user in users or homes:
        home = Path(folder).resolve() / user
        found = {path: (level, source, title, path) for level, _, source, path, title in
                 findings(program, disk, home)}
        sums = Sums()
        for _, place, size, files, right, made, *_ in homes[user]:
            level, source, title, path = verdict(found, payload(home, place, files))
            fields = (int(size), set(right.split(",")), made, level, "rule" if source == RULE else source)
            bad = sums.add(*fields)
            every.add(*fields)
            if bad and "--wrong" in sys.argv:
                sign = "DANGEROUS" if level in EASY and not set(right.split(",")) & EASY else "wrong"
                print(f"  {sign:9} {size:>6} {level:11} not {right:26} {place}  [{title}] {path[len(str(home)):]}")
        print(sums.line(user))
    print(every.line("all"))


RULE = "Kural"

if __name__ == "__main__":
    main()
