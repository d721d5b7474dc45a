#!/usr/bin/env python3
"""Runs the converter of legacy book sets on foreign, damaged and byte-flipped databases.

  legacy.py CONVERTER DATABASES RUNS

DATABASES holds broken/, variants/ and legacy_plant.mdb. Every run must come to its end in time and
leave nothing but a whole project, or nothing; a converter that crashes is counted, since the editor
goes on, and then leaves what the editor removes. Run number N is always the same one.
"""
import collections
import concurrent.futures
import json
import os
import pathlib
import random
import resource
import shutil
import subprocess
import sys
import tempfile
import threading

SECONDS = 20
MEMORY = 1 << 30
PAGE = 4096
LISTED = {"QV_Selection.xml", "QV_Selection.xml.lock"}
HALF_MADE = {"P", "P.qvnew", "P.qvnew.lock"}


class Place:
    """An installation of its own with a database beside it."""

    def __init__(self, top):
        self.top = pathlib.Path(top)
        self.server = self.top / "drives" / "s"

    def fresh(self, database):
        shutil.rmtree(self.top, ignore_errors=True)
        for folder in (self.server / "Docs", self.server / "Old", self.top / "settings", self.top / "cwd"):
            folder.mkdir(parents=True)
        (self.server / "Old" / "old.mdb").write_bytes(database)

    def convert(self, converter, accept):
        """How it ended: an end of the converter's own, or "crashed" or "silent"."""
        command = [converter, r"--database=S:\Old\old.mdb", "--mode=1", r"--target=S:\Docs\P",
                   "--name=P", "--id=P1", "--language=ENU"] + ["--accept-partly"] * accept
        settings = {"QUOVANE_DRIVES": str(self.top / "drives"), "QUOVANE_SETTINGS": str(self.top / "settings")}
        try:
            run = subprocess.run(command, env=os.environ | settings, cwd=self.top / "cwd", timeout=SECONDS,
                                 stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, preexec_fn=limit)
        except subprocess.TimeoutExpired:
            return "silent", ""
        if run.returncode < 0:
            return "crashed", "signal %d" % -run.returncode
        last = json.loads(run.stdout.splitlines()[-1])
        return (last["end"], last["reason"]) if last["kind"] == "end" else ("no end", "")

    def stray(self, end, database):
        """What is there and should not be, or should be and is not."""
        docs = set(os.listdir(self.server / "Docs")) - LISTED
        wrong = docs - (HALF_MADE if end in ("crashed", "silent") else {"P"} if end == "done" else set())
        if end == "done" and not (self.server / "Docs" / "P" / "QV_Toc.xml").is_file():
            wrong.add("no table of contents")
        for folder, wanted in ((self.top, {"drives", "settings", "cwd"}), (self.top / "drives", {"s"}),
                               (self.top / "cwd", set()), (self.server, {"Docs", "Old"}),
                               (self.server / "Old", {"old.mdb"})):
            wrong |= set(os.listdir(folder)) ^ wanted
        wrong |= {name for name in os.listdir(self.top / "settings") if not name.startswith("machine.ini")}
        if (self.server / "Old" / "old.mdb").read_bytes() != database:
            wrong.add("the database was changed")
        return wrong


def limit():
    resource.setrlimit(resource.RLIMIT_AS, (MEMORY, MEMORY))
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))


def definition_pages(database):
    """Pages that say where things are: definitions, maps of pages, the rows of the catalogue."""
    pages = range(0, len(database), PAGE)
    return [at for at in pages if database[at] in (2, 5) or database[at] == 1 and database[at + 4] == 2]


def flipped(database, number):
    choice = random.Random(number)
    changed = bytearray(database)
    aims = definition_pages(database)
    for _ in range(choice.randint(1, 64)):
        aimed = choice.random() < 0.5
        at = choice.choice(aims) + choice.randrange(PAGE) if aimed else choice.randrange(len(database))
        changed[at] = choice.randrange(256)
    return bytes(changed)


def main():
    converter, databases, runs = sys.argv[1], pathlib.Path(sys.argv[2]), int(sys.argv[3])
    small = (databases / "legacy_plant.mdb").read_bytes()
    found = []
    with tempfile.TemporaryDirectory(dir=os.environ.get("TMPDIR", "/dev/shm")) as work:
        own = threading.local()

        def attempt(name, database, accept):
            if not hasattr(own, "place"):
                own.place = Place(pathlib.Path(work) / str(threading.get_ident()))
            own.place.fresh(database)
            end, reason = own.place.convert(converter, accept)
            wrong = own.place.stray(end, database)
            if end in ("silent", "no end") or wrong:
                found.append(f"{name}: {end}, {sorted(wrong)}")
            return name, end, reason

        for file in sorted(databases.glob("broken/*")) + sorted(databases.glob("variants/*")):
            for accept in (False, True):
                name, end, reason = attempt(f"{file.parent.name}/{file.name}", file.read_bytes(), accept)
                if not accept:
                    print(f"{name}: {end} {reason}")
                if end == "crashed" or end != "done" and not reason:
                    found.append(f"{name}: {end} without a reason")
        with concurrent.futures.ThreadPoolExecutor(2) as pool:
            ends = list(pool.map(lambda number: attempt(number, flipped(small, number), number % 2), range(runs)))
    print(runs, "byte-flipped copies:", dict(collections.Counter(end for _, end, _ in ends)))
    print("crashed:", [(number, reason) for number, end, reason in ends if end == "crashed"])
    print("\n".join(["Found:"] + found) if found else "Nothing left behind, all came to an end.")
    sys.exit(1 if found else 0)


main()
