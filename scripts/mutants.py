#!/usr/bin/env python3
"""mutants.py [COUNT] [SEED] [FOLDER...]: plants one change at a time and tells which of them no test notices.

A change turns a relation or a logical operator, moves a constant by one in its last digit, negates a condition, or
removes a call or an assignment. COUNT of them (100) are drawn by SEED (1) from the sources below the folders: what
decides the receiver's behaviour, if none is named. Each is built and tested in virtual time in a copy of the tree,
build/mutants: the tests beside the source first, then the others, those first that have noticed most changes there and
then the quickest, a few simulated sessions last, up to the first that fails. A test that takes ten times as long as it
should has failed. A change that does not compile, or of which the compiler makes the same programs, is drawn again.
Ends well when at least 97 % were noticed, and with what it has so far when it is interrupted. Sources and tests are
those of virtual_tests.py.
"""
import dataclasses
import hashlib
import json
import os
import pathlib
import random
import re
import resource
import shutil
import statistics
import subprocess
import sys
import time

from virtual_tests import FOLDERS, ROOT, build_programs, configure, programs, sources

WORK = ROOT / "build" / "mutants"
TREE = WORK / "tree"
KEPT = WORK / "kept"  # what is built without a change
BUILD = TREE / "build" / "release"  # as far from its sources as every other, so that ccache knows what it compiles
GOAL = 0.97


# ---- What can be changed

OTHER = {" == ": " != ", " != ": " == ", " < ": " <= ", " <= ": " < ", " > ": " >= ", " >= ": " > ", " && ": " || ",
         " || ": " && "}
OPERATORS = re.compile("|".join(re.escape(text) for text in OTHER))
NUMBERS = re.compile(r"(?<![\w.'])(0x[0-9A-Fa-f]+|\d[\d']*\.\d+|\d[\d']*)(?=[^\w.'])")
CONDITIONS = re.compile(r"\b(?:if|while) \(")
STATEMENTS = re.compile(r"^ +(?:if \([^()]*(?:\([^()]*\)[^()]*)*\) )?([a-z][\w.:]*(?:->[\w.]+)*(?:\(| = )[^;{}]*;)$",
                        re.MULTILINE)
# Comments, texts, characters; then lines that decide nothing or speak to the compiler and the reader alone.
SILENT = re.compile(r"//[^\n]*|\"(?:[^\"\\\n]|\\.)*\"|'(?:[^'\\\n]|\\.)'|^[ \t]*#[^\n]*$"
                    r"|^[^\n]*\b(?:static_assert|assert|reserve|static_cast<void>)\b[^\n]*$", re.MULTILINE)


@dataclasses.dataclass(frozen=True)
class Mutant:
    path: str  # from the top of the tree
    start: int
    end: int
    new: str

    def of(self, text):
        return text[:self.start] + self.new + text[self.end:]

    def told(self, text):
        line = text.count("\n", 0, self.start) + 1
        old = " ".join(text[self.start:self.end].split())
        return f"{self.path}:{line}  {old}  ->  {self.new.strip() or 'nothing'}"


def moved(number, step):
    """The number with its last digit one off, as it is written; none below zero."""
    if number.startswith("0x"):
        value = int(number, 16) + step
        return f"0x{value:0{len(number) - 2}X}" if value >= 0 else None
    whole, point, fraction = number.replace("'", "").partition(".")
    value = int(whole + fraction) + step
    digits = f"{value:0{len(fraction) + 1}d}"
    if value < 0:
        return None
    return f"{digits[:-len(fraction)]}.{fraction and digits[-len(fraction):]}" if point else digits


def condition_end(text, start):
    """Where the parenthesis that opens just before `start` closes."""
    depth = 1
    for i in range(start, len(text)):
        depth += (text[i] == "(") - (text[i] == ")")
        if depth == 0:
            return i
    return start


def mutants_of(path, text):
    spoken = SILENT.sub(lambda silent: " " * len(silent.group()), text)
    found = [Mutant(path, match.start(), match.end(), OTHER[match.group()]) for match in OPERATORS.finditer(spoken)]
    for match in NUMBERS.finditer(spoken):
        for new in filter(None, (moved(match.group(), 1), moved(match.group(), -1))):
            found.append(Mutant(path, match.start(), match.end(), new))
    for match in CONDITIONS.finditer(spoken):
        start, end = match.end(), condition_end(spoken, match.end())
        start = max(start, spoken.rfind("; ", start, end) + 2)
        if not re.search(r"[^=!<>]=[^=]", spoken[start:end]):
            found.append(Mutant(path, start, end, f"!({text[start:end]})"))
    for match in STATEMENTS.finditer(spoken):
        found.append(Mutant(path, match.start(1), match.end(1), ";"))
    return found


# ---- The copy, its programs

def write(path, content):
    if not path.exists() or path.read_bytes() != content:
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(content)


def copy_tree():
    """Brings the copy up to date. A file that is the same keeps its time."""
    listed = subprocess.run(["git", "ls-files", "-co", "--exclude-standard"], cwd=ROOT, capture_output=True,
                            text=True, check=True).stdout.split("\n")
    wanted = {path for path in listed if (ROOT / path).is_file()}
    for folder, _, files in os.walk(TREE):
        for path in (pathlib.Path(folder, file) for file in files):
            if BUILD not in path.parents and str(path.relative_to(TREE)) not in wanted:
                path.unlink()
    for path in wanted:
        write(TREE / path, (ROOT / path).read_bytes())
        shutil.copymode(ROOT / path, TREE / path)


def content(test):
    return hashlib.sha256(pathlib.Path(test.command[0]).read_bytes()).hexdigest()


def built(folder):
    """The programs below a folder and what they are linked from, as paths in it."""
    found = [*folder.rglob("*.o"), *folder.rglob("*.a"), *(folder / "bin").iterdir()]
    return [path.relative_to(folder) for path in found]


def changed(path, since):
    return not path.exists() or path.stat().st_mtime_ns >= since


def processor_time():
    used = resource.getrusage(resource.RUSAGE_CHILDREN)
    return used.ru_utime + used.ru_stime


def baseline():
    """The tests, which all pass without a change, the quickest first. How long they take limits how long they may take
    with one. A program that has passed before does not run again."""
    stamp = WORK / "baseline.json"
    took = json.loads(stamp.read_text(encoding="utf-8")) if stamp.exists() else {}
    print("building the tests as they are", flush=True)
    made, output = build_programs(BUILD, programs(BUILD))
    if not made:
        sys.exit(output + "the tree does not build as it is")
    tests = programs(BUILD)
    for test in tests:
        test.unchanged = content(test)
        if test.unchanged not in took:
            print(f"running {test.name}", flush=True)
            begin = processor_time()
            if not test.passes():
                sys.exit(f"{test.name} fails without any change")
            took[test.unchanged] = processor_time() - begin
            stamp.write_text(json.dumps(took), encoding="utf-8")
        test.limit = int(10 * took[test.unchanged]) + 5
    shutil.rmtree(KEPT, ignore_errors=True)
    for path in built(BUILD):
        (KEPT / path).parent.mkdir(parents=True, exist_ok=True)
        shutil.copy2(BUILD / path, KEPT / path)
    return sorted(tests, key=lambda test: took[test.unchanged])


# ---- One change after another

class Planted:
    """The tree with the change, and afterwards as it was, with the programs and their parts: nothing is compiled to
    come back."""

    def __init__(self, mutant, text):
        self.path, self.mutant, self.text = TREE / mutant.path, mutant, text

    def __enter__(self):
        self.time = self.path.stat().st_mtime_ns
        self.path.write_text(self.mutant.of(self.text), encoding="utf-8")
        self.begin = self.path.stat().st_mtime_ns

    def __exit__(self, *_):
        self.path.write_text(self.text, encoding="utf-8")
        os.utime(self.path, ns=(self.time, self.time))
        for path in built(KEPT):
            if changed(BUILD / path, self.begin):
                shutil.copy2(KEPT / path, BUILD / path)


def noticed_by(path, tests):
    """The first test that fails, "" when all pass; none when the change does not compile or is in no program. Each
    program is built when its turn comes, so that a header is compiled for no more of them than needed. A program that
    is the same without the change does not run."""
    folder = os.path.dirname(path)

    def turn(test):
        distance = 0 if path.startswith(test.folder + "/") else 2 if test.folder == "tests/simulation" else 1
        return distance, -test.noticed[folder]

    reached = False
    for test in sorted(tests, key=turn):
        if not build_programs(BUILD, [test])[0]:
            return None
        if content(test) == test.unchanged:
            continue
        if not test.passes():
            test.noticed[folder] += 1
            return test.name
        reached = True
    return "" if reached else None


def draw(seed, folders):
    texts = {path: (TREE / path).read_text(encoding="utf-8") for path in sources(folders)}
    drawn = [mutant for path, text in sorted(texts.items()) for mutant in mutants_of(path, text)]
    random.Random(seed).shuffle(drawn)
    return texts, drawn


def main():
    count = int(sys.argv[1]) if len(sys.argv) > 1 else 100
    seed = int(sys.argv[2]) if len(sys.argv) > 2 else 1
    folders = tuple(sys.argv[3:]) or FOLDERS

    WORK.mkdir(parents=True, exist_ok=True)
    copy_tree()
    # The tests' surroundings have the names that a release build gives them, so that ccache has what it has compiled.
    configure(TREE, "release", "-DCMAKE_EXE_LINKER_FLAGS=-s", f"-DLUMBRINE_TESTS_SOURCE_DIR={ROOT}",
              f"-DLUMBRINE_TESTS_BIN_DIR={ROOT / 'build' / 'release' / 'bin'}")
    tests = baseline()
    os.environ["CCACHE_DISABLE"] = "1"  # nobody asks for a change again
    texts, drawn = draw(seed, folders)
    print(f"{count} of {len(drawn)} changes to {len(texts)} files, seed {seed}", flush=True)

    survivors, took, processor = [], [], processor_time()
    try:
        for mutant in drawn:
            if len(took) == count:
                break
            begin = time.monotonic()
            with Planted(mutant, texts[mutant.path]):
                killer = noticed_by(mutant.path, tests)
            if killer is None:
                continue
            took.append(time.monotonic() - begin)
            if not killer:
                survivors.append(mutant)
            print(f"{len(took):>4}{took[-1]:>5.0f} s  {killer or 'SURVIVED':<28}{mutant.told(texts[mutant.path])}",
                  flush=True)
    except KeyboardInterrupt:
        print("\nended before its time", end="")
    if not took:
        sys.exit("\nnothing was tried")

    noticed = len(took) - len(survivors)
    print(f"\n{noticed} of {len(took)} noticed. {sum(took) / len(took):.1f} s each, half of them in at most "
          f"{statistics.median(took):.1f} s; {(processor_time() - processor) / len(took):.1f} s of processor time each "
          "with what was drawn again")
    for mutant in survivors:
        print(f"survived: {mutant.told(texts[mutant.path])}")
    sys.exit(0 if noticed >= GOAL * len(took) else 1)


if __name__ == "__main__":
    main()
