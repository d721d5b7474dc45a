#!/usr/bin/env python3
"""Runs the work on whole projects over files whose values are hostile (names, folders, paths) and
looks whether anything changed that is none of the project's business.
    hostile.py TOOLS_FOLDER QVDEV
TOOLS_FOLDER/faults holds xml_badset.py and fence_run.py. Exit status 1 when something was found."""

import hashlib
import json
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import xml.etree.ElementTree as tree

tools, qvdev = pathlib.Path(sys.argv[1]) / "faults", sys.argv[2]
work = pathlib.Path(tempfile.mkdtemp(prefix="hostile-"))
server = work / "above" / "server"
docs = server / "Docs"
found = []


def run(*arguments):
    """Runs a command behind the fence. It may refuse; it may not crash or touch other places."""
    command = [sys.executable, tools / "fence_run.py", "--allow", server, "--", qvdev, "--server", server,
               *arguments]
    return subprocess.run(command, capture_output=True, text=True, timeout=60)


def plain(*arguments):
    subprocess.run([qvdev, "--server", server, *arguments], check=True, capture_output=True)


def make_installation():
    docs.mkdir(parents=True)
    pages = work / "pages"
    pages.mkdir()
    (pages / "one.htm").write_text("<html><title>One</title><body>**Keep** one</body></html>")
    (work / "above" / "beside.txt").write_text("keep")
    for name, acronym in (("Keep", "KEP"), ("Plant", "PLT")):
        plain("new", name, "--id", acronym)
        plain("import", name, acronym, pages, "--new-book", "Book of " + name, "--folder", "B" + acronym)
    shutil.copytree(work / "above", work / "fresh")


def restore():
    shutil.rmtree(work / "above")
    shutil.copytree(work / "fresh", work / "above")


def state(*without):
    """Checksums of all files but those of the named projects and the files that lists live in."""
    sums = {}
    for path in sorted((work / "above").rglob("*")):
        inside = path.relative_to(docs).parts if path.is_relative_to(docs) else ("",)
        if inside and (inside[0] in without or inside[0].startswith("QV_Selection.xml")
                       or ".qvnew" in inside[0]):
            continue
        sums[str(path)] = hashlib.sha256(path.read_bytes()).hexdigest() if path.is_file() else "folder"
    return sums


def check(case, what, without, before, result):
    after = state(*without)
    changed = {path for path in before.keys() | after.keys() if before.get(path) != after.get(path)}
    if changed:
        found.append(f"{case}: {what} changed {sorted(changed)}")
    if result.returncode != 0 or "status -" in result.stdout:
        found.append(f"{case}: {what}: {result.stdout}{result.stderr}")


def names_in(catalogue):
    root = tree.fromstring(catalogue.read_bytes().decode("utf-16").encode("utf-8").split(b"?>", 1)[1])
    return [element.text or "" for element in root.iter("QV_Name")]


def work_on(case, own, jobs):
    for what, arguments in jobs:
        before = state(*own)
        check(case, what, own, before, run(*arguments))


def hostile_catalogue(case, file):
    for name in names_in(file)[:20]:
        restore()
        shutil.copy(file, docs / "QV_Selection.xml")
        own = [name] if name and "/" not in name and name not in (".", "..") else []
        work_on(case, own, [("release", ["release", "--", name]), ("reopen", ["reopen", "--", name]),
                            ("rank", ["rank", "--", name + "=7"]), ("build", ["build", "--", name]),
                            ("pack", ["pack", "--", name]), ("report", ["report", "targets"]),
                            ("report", ["report", "references"])])
        work_on(case, ["Merged"], [("merge", ["merge", "--id", "M", "--", "Merged", "Plant", name])])
        work_on(case, own, [("delete", ["delete", "--files", "--yes", "--", name]),
                            ("take out", ["delete", "--yes", "--", name])])


def hostile_project_file(case, file):
    restore()
    shutil.copy(file, docs / "Plant" / file.name)
    work_on(case, ["Merged"], [("merge", ["merge", "--id", "M", "Merged", "Keep", "Plant"]),
                               ("report", ["report", "targets"]), ("report", ["report", "references"])])
    work_on(case, ["Plant"], [("delete", ["delete", "Plant", "--files", "--yes"])])


make_installation()
subprocess.run([sys.executable, tools / "xml_badset.py", work / "bad"], check=True, capture_output=True)
cases = [case for case in json.loads((work / "bad" / "manifest.json").read_text())
         if case["group"] == "value" and case["kind"] in ("catalogue", "toc", "linkid")]
for one in cases:
    source = work / "bad" / one["path"]
    (hostile_catalogue if one["kind"] == "catalogue" else hostile_project_file)(
        one["kind"] + "/" + one["case"], source)
print(f"{len(cases)} files with hostile values, {len(found)} findings")
print("\n".join(found))
shutil.rmtree(work)
sys.exit(1 if found else 0)
