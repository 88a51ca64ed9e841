"""tidy.py BUILD JOBS FILE...: clang-tidy on those sources, in the batches in which the build folder compiles them.

A batch that was found clean is not looked at again while none of its sources, no header of the project that they
include, nor its command or the list of checks has changed. What is known is kept for all checkouts of this user.
"""
import concurrent.futures
import hashlib
import json
import os
import pathlib
import re
import shlex
import subprocess
import sys

TIDY = "clang-tidy-19"
KNOWN = pathlib.Path(os.environ.get("XDG_CACHE_HOME", pathlib.Path.home() / ".cache")) / "lumbrine-tidy"


def sources_of(path):
    """Those that a batch includes; another file is its own only source."""
    if "/Unity/" not in path:
        return {path}
    return set(re.findall(r'^#include "(.*)"$', pathlib.Path(path).read_text(encoding="utf-8"), re.MULTILINE))


def batches(build, wanted):
    """The path and the command of each batch that has one of the wanted sources; and those that are in none."""
    found, missing = {}, set(wanted)
    for entry in json.loads((build / "compile_commands.json").read_text(encoding="utf-8")):
        path = os.path.abspath(os.path.join(entry["directory"], entry["file"]))
        if sources_of(path) & missing:
            found[path] = entry
            missing -= sources_of(path)
    return found, sorted(missing)


def dependencies(entry):
    """The files that the source consists of. Without the precompiled header, which would hide some of them."""
    given = shlex.split(entry["command"])
    arguments, skip = [], 0
    for i, argument in enumerate(given):
        if skip:
            skip -= 1
        elif given[i : i + 2] == ["-Xclang", "-include-pch"]:
            skip = 3
        elif argument in ("-o", "-MF", "-MT"):
            skip = 1
        elif argument not in ("-c", "-MD"):
            arguments.append(argument)
    told = subprocess.run(arguments + ["-M"], cwd=entry["directory"], capture_output=True, text=True, check=False)
    return told.stdout.replace("\\\n", " ").partition(": ")[2].split() if told.returncode == 0 else []


def key_of(entry):
    """What the batch is known by; none when its parts cannot be told."""
    paths = [os.path.abspath(os.path.join(entry["directory"], path)) for path in dependencies(entry)]
    if not paths:
        return None
    root = os.getcwd()
    key = hashlib.sha256()
    key.update(pathlib.Path(".clang-tidy").read_bytes())
    key.update(entry["command"].replace(root, "").encode())
    for path in sorted(paths):
        if path.startswith(root + os.sep) and not path.endswith("cmake_pch.hxx"):
            key.update(hashlib.sha256(pathlib.Path(path).read_bytes()).digest())
    return KNOWN / key.hexdigest()


def main():
    build, jobs = pathlib.Path(sys.argv[1]), int(sys.argv[2])
    KNOWN.mkdir(parents=True, exist_ok=True)
    entries, missing = batches(build, {os.path.abspath(file) for file in sys.argv[3:]})

    def look(path):
        key = key_of(entries[path])
        if key is not None and key.exists():
            return None
        run = subprocess.run([TIDY, "-p", str(build), "--quiet", path], capture_output=True, text=True, check=False)
        if run.returncode == 0 and key is not None:
            key.touch()
        return run.stdout + run.stderr if run.returncode != 0 else ""

    with concurrent.futures.ThreadPoolExecutor(jobs) as pool:
        results = list(pool.map(look, entries))
    findings = [text for text in results if text] + [f"nothing compiles {path}\n" for path in missing]
    print(f"{len(entries)} batches, {sum(text is not None for text in results)} of them new or changed")
    print("".join(findings), end="")
    sys.exit(1 if findings else 0)


if __name__ == "__main__":
    main()
