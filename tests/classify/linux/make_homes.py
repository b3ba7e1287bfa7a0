#!/usr/bin/env python3
"""Builds the homes that homes.tsv lists, out of sparse files.

    make_homes.py FOLDER [USER...]

Places below ~ land in FOLDER/<user>, absolute ones in FOLDER/root/<user>. Each place
becomes a folder with one sparse file of its size inside, or that file itself where its
name is a file's, and gets the small files that make it what it is. Nothing is overwritten.
"""

import os
import posixpath
import re
import sys
import time
from pathlib import Path, PurePosixPath

MEGABYTE = 1 << 20
DAYS_OLD = 90

FILE_SUFFIXES = set(
    ".db .deb .gz .iso .json .keystore .kra .part .pot .properties .qcow2 .raw .sqlite .toml"
    " .vdi .vmdk .xbel .xml".split()
)
FILE_NAMES = re.compile(r"core\.\d+|token|stored_tokens|id_ed25519|\.xsession-errors")

# What the big file of a folder is called, by the place or its evidence: first match wins.
PAYLOADS = [
    (r"[\t;]\.git/HEAD", ".git/objects/pack/pack-5f1c0de2a9b84e77.pack"),
    (r"\.trashinfo", "files/Eski Arşiv.zip"),
    (r"/cur\t", "1731000099.M9P1.host:2,S"),
    (r"(\t|;)cur/", "cur/1731000099.M9P1.host:2,S"),
    (r"pyvenv\.cfg", "lib/python3.11/site-packages/torch/lib/libtorch_cuda.so"),
    (r"conda-meta/history", "lib/libmkl_core.so.2"),
    (r"/node_modules\t", "@next/swc-linux-x64-gnu/next-swc.linux-x64-gnu.node"),
    (r"CacheStorage\t", "0a1b2c3d/index-dir/5f1c_0"),
    (r"/(Code )?Cache\t|/cache2\t", "Cache_Data/f_00a1b2"),
    (r"steamapps/common/|/Heroic/|Games/", "data/pak0_000.pak"),
    (r"/var/lib/docker\t|containers/storage|share/docker", "overlay2/9f/diff/usr/lib/libLLVM.so"),
    (r"Resimler", "DSC_0413.NEF"),
    (r"Videolar", "2025-08-30 14-02-11.mkv"),
    (r"[Ll]ogs?\t", "eski.log"),
    (r"[Cc]ache\t|/\.cache/", "5f/1c0de2a9b84e77"),
    (r"", "veri.bin"),
]

MAGIC = {
    "CACHEDIR.TAG": b"Signature: 8a477f597d28d172789f06886806bc55\n# Made by the program.\n",
    "HEAD": b"ref: refs/heads/main\n",
    "package.json": b'{"name": "ornek", "version": "1.0.0", "private": true}\n',
    "pyvenv.cfg": b"home = /usr/bin\nversion = 3.11.9\n",
    "Cargo.toml": b'[package]\nname = "ornek"\nversion = "0.1.0"\nedition = "2021"\n',
    "pom.xml": b"<project><modelVersion>4.0.0</modelVersion></project>\n",
    "CMakeLists.txt": b"cmake_minimum_required(VERSION 3.20)\nproject(ornek)\n",
    "CMakeCache.txt": b"# This is the CMakeCache file.\nCMAKE_BUILD_TYPE:STRING=Debug\n",
    "system.reg": b"WINE REGISTRY Version 2\n",
    "profiles.ini": b"[Profile0]\nName=default\nIsRelative=1\n",
    "Preferences": b"{}\n",
    ".git": b"gitdir: ../.git/worktrees/dist\n",
    ".iso": b"\0" * 32769 + b"CD001\x01",
    ".qcow2": b"QFI\xfb\0\0\0\x03",
    ".vdi": b"<<< Oracle VM VirtualBox Disk Image >>>\n".ljust(64, b"\0") + b"\x7f\x10\xda\xbe",
    ".sqlite": b"SQLite format 3\0",
    ".db": b"SQLite format 3\0",
    ".deb": b"!<arch>\ndebian-binary   ",
    ".gz": b"\x1f\x8b\x08",
    ".zip": b"PK\x03\x04",
    ".json": b"{}\n",
}
ELF_CORE = b"\x7fELF\x02\x01\x01" + b"\0" * 9 + b"\x04\0\x3e\0\x01\0\0\0"

TURKISH_FOLDERS = {
    "DESKTOP": "Masaüstü", "DOCUMENTS": "Belgeler", "DOWNLOAD": "İndirilenler",
    "MUSIC": "Müzik", "PICTURES": "Resimler", "VIDEOS": "Videolar",
}


def content(path: Path) -> bytes:
    if re.fullmatch(r"core\.\d+", path.name):
        return ELF_CORE
    if manifest := re.fullmatch(r"appmanifest_(\d+)\.acf", path.name):
        return b'"AppState"\n{\n\t"appid"\t\t"%s"\n}\n' % manifest[1].encode()
    return MAGIC.get(path.name, MAGIC.get(path.suffix, b"ornek\n"))


def is_file(place: str) -> bool:
    name = PurePosixPath(place)
    return name.suffix in FILE_SUFFIXES or bool(FILE_NAMES.fullmatch(name.name))


def below(root: Path, place: str, entry: str = "") -> Path:
    inside = posixpath.normpath(posixpath.join(place.removeprefix("~").lstrip("/"), entry))
    if inside.startswith(".."):
        sys.exit(f"{place}: {entry} leaves the home")
    return root / inside


def write(path: Path, size: int) -> None:
    path.parent.mkdir(parents=True, exist_ok=True)
    with open(path, "xb") as file:
        file.write(content(path))
        file.truncate(max(size, file.tell()))
    then = time.time() - DAYS_OLD * 86400
    os.utime(path, (then, then))


def build(folder: Path, user: str, places: list) -> None:
    roots = [folder / ("" if p[0].startswith("~") else "root") / user for p in places]
    for root, (place, size, files) in zip(roots, places):
        path = below(root, place)
        if not is_file(place):
            key = f"{place}\t{files}"
            path /= next(name for pattern, name in PAYLOADS if re.search(pattern, key))
        write(path, size * MEGABYTE)
    for root, (place, _, files) in zip(roots, places):
        for entry in filter(None, files.split(";")):
            path = below(root, place, entry)
            if entry.endswith("/"):
                path.mkdir(parents=True, exist_ok=True)
            elif not path.exists():
                write(path, 0)
    if any(place.split("/")[1] in TURKISH_FOLDERS.values() for place, _, _ in places):
        names = [f'XDG_{key}_DIR="$HOME/{name}"\n' for key, name in TURKISH_FOLDERS.items()]
        (folder / user / ".config").mkdir(exist_ok=True)
        (folder / user / ".config/user-dirs.dirs").write_text("".join(names), encoding="utf-8")


def main() -> None:
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    homes = {}
    table = Path(__file__).with_name("homes.tsv").read_text(encoding="utf-8")
    for line in table.splitlines()[1:]:
        user, place, size, files, *_ = line.split("\t")
        homes.setdefault(user, []).append((place, int(size), files))
    folder = Path(sys.argv[1])
    users = sys.argv[2:] or list(homes)
    for user in users:
        if user not in homes:
            sys.exit(f"no such user: {user}; there are {', '.join(homes)}")
        if (folder / user).exists() or (folder / "root" / user).exists():
            sys.exit(f"{folder / user}: already there")
    for user in users:
        build(folder, user, homes[user])
        total = sum(size for _, size, _ in homes[user])
        print(f"{user}: {len(homes[user])} places, {total / 1e6:.2f} TB")


if __name__ == "__main__":
    main()
