"""coverage.py: measures which lines and branches of the sources that decide the receiver's behaviour are run by the
tests in virtual time. Prints every line that never runs or lacks a branch, and a table. Succeeds if the goals are met.

A branch is one outcome of a condition in the source; each part of `a && b` counts as a condition. The paths of
exceptions and failed assertions do not count.
"""
import collections
import json
import os
import shutil
import subprocess
import sys

from virtual_tests import FOLDERS, ROOT, build_programs, configure, programs, sources

BUILD = ROOT / "build" / "coverage"
PROFILES = BUILD / "profiles"
LINE_GOAL, BRANCH_GOAL = 0.98, 0.92


# An entry of llvm-cov's list of segments. `between` marks a gap region: the text between two statements.
Segment = collections.namedtuple("Segment", "line column count counted entered between")


class Line:
    """How often it ran, and each of its branches."""

    def __init__(self, count):
        self.count, self.branches = count, []


class Count:
    """Lines and branches, and how many of them ran."""

    def __init__(self):
        self.lines = self.lines_run = self.branches = self.branches_run = 0

    def add(self, line):
        self.lines += 1
        self.lines_run += line.count > 0
        self.branches += len(line.branches)
        self.branches_run += sum(count > 0 for count in line.branches)

    def __add__(self, other):
        both = Count()
        for name, value in vars(self).items():
            setattr(both, name, value + getattr(other, name))
        return both

    def shares(self):
        return self.lines_run / max(self.lines, 1), self.branches_run / max(self.branches, 1)


def source_lines(path):
    return (ROOT / path).read_text(encoding="utf-8").split("\n")


def run(tests):
    shutil.rmtree(PROFILES, ignore_errors=True)
    os.environ["LLVM_PROFILE_FILE"] = str(PROFILES / "%p.profraw")
    for test in tests:
        if not test.passes():
            sys.exit(f"{test.name} fails: {' '.join(map(str, test.command))}")


def measured(tests):
    """The counted lines of each source, by their numbers."""
    merged = BUILD / "all.profdata"
    subprocess.run(["llvm-profdata-19", "merge", "--sparse", "-o", merged, *PROFILES.glob("*.profraw")], check=True)
    told = subprocess.run(["llvm-cov-19", "export", "--skip-functions", "--instr-profile", merged,
                           *[option for test in tests for option in ("--object", test.command[0])]],
                          cwd=ROOT, capture_output=True, text=True, check=True)
    named = {path_of(file["filename"]): file for file in json.loads(told.stdout)["data"][0]["files"]}
    return {path: counted_lines(path, named[path]) for path in sources() if path in named}


def path_of(name):
    """The path from the top of the tree. With ccache, the compiler records paths relative to the build folder."""
    path = os.path.relpath(ROOT / name, ROOT)
    return path.removeprefix(f"{BUILD.relative_to(ROOT)}/")


def counted_lines(path, file):
    text = source_lines(path)
    lines = {number: Line(count) for number, count in line_counts(file["segments"])
             if any(map(str.isalnum, text[number - 1]))}
    branches = collections.Counter()  # adds up a template's instantiations, so that each branch counts once
    for first, column, last, end, yes, no, *_ in file["branches"]:
        if first in lines and "assert(" not in text[first - 1]:
            branches[first, column, last, end, "yes"] += yes
            branches[first, column, last, end, "no"] += no
    for place, count in branches.items():
        lines[place[0]].branches.append(count)
    return lines


def line_counts(segments):
    """Yields the lines with code and how often they ran. A segment extends to the start of the next one."""
    begun = collections.defaultdict(list)
    for segment in map(Segment._make, segments):
        begun[segment.line].append(segment)
    reaching = None
    for number in range(min(begun), max(begun) + 1):
        here = begun[number]
        counts = [each.count for each in here if each.counted and each.entered and not each.between]
        if reaching and reaching.counted and not reaching.between:
            counts.append(reaching.count)
        passed_over = here and here[0].entered and not here[0].counted  # a comment
        if counts and not passed_over:
            yield number, max(counts)
        reaching = here[-1] if here else reaching


def gaps(path, lines):
    text = source_lines(path)
    for number, line in sorted(lines.items()):
        missed = line.branches.count(0)
        if line.count == 0:
            yield f"{path}:{number}  not run       {text[number - 1].strip()}"
        elif missed:
            yield f"{path}:{number}  {missed} of {len(line.branches)} missed  {text[number - 1].strip()}"


def main():
    configure(ROOT, "coverage")
    made, output = build_programs(BUILD, programs(BUILD))
    if not made:
        sys.exit(output)
    tests = programs(BUILD)
    run(tests)

    counts = {folder: Count() for folder in FOLDERS}
    files = measured(tests)
    for path in sources():
        if path.endswith(".cpp") and path not in files:
            print(f"{path}  in none of these programs")
    for path, lines in sorted(files.items()):
        for line in lines.values():
            counts[next(folder for folder in FOLDERS if path.startswith(folder))].add(line)
        for gap in gaps(path, lines):
            print(gap)

    total = sum(counts.values(), Count())
    print(f"\n{'':<16}{'lines':>8}{'run':>9}{'branches':>12}{'taken':>9}")
    for name, count in [*counts.items(), ("all", total)]:
        lines, branches = count.shares()
        print(f"{name:<16}{count.lines:>8}{lines:>9.1%}{count.branches:>12}{branches:>9.1%}")
    lines, branches = total.shares()
    sys.exit(0 if lines >= LINE_GOAL and branches >= BRANCH_GOAL else 1)


if __name__ == "__main__":
    main()
