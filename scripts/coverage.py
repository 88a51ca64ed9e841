"""coverage.py: which lines and branches the tests of virtual time go through, of the sources that decide the receiver's
behaviour. Prints every line that does not run or lacks a branch, and a table. Ends well when the goals are kept.

Branches that an exception or a failed assertion would take, and those that the compiler adds where no source has any,
do not count.
"""
import json
import subprocess
import sys

from virtual_tests import FOLDERS, ROOT, build_programs, configure, programs, sources

BUILD = ROOT / "build" / "coverage"
LINE_GOAL, BRANCH_GOAL = 0.98, 0.92


class Count:
    """Lines and branches, and how many of them ran."""

    def __init__(self):
        self.lines = self.lines_run = self.branches = self.branches_run = 0

    def add(self, line):
        self.lines += 1
        self.lines_run += line["count"] > 0
        self.branches += len(line["branches"])
        self.branches_run += sum(branch["count"] > 0 for branch in line["branches"])

    def __add__(self, other):
        both = Count()
        for name, value in vars(self).items():
            setattr(both, name, value + getattr(other, name))
        return both

    def shares(self):
        return self.lines_run / max(self.lines, 1), self.branches_run / max(self.branches, 1)


def measured():
    """gcovr's lines of each source."""
    told = subprocess.run(["gcovr", "--root", ROOT, BUILD, "--json", "-", "--exclude-throw-branches",
                           "--exclude-unreachable-branches", "--exclude-branches-by-pattern", r".*\bassert\(.*",
                           *[option for folder in FOLDERS for option in ("--filter", f"{ROOT}/{folder}")]],
                          capture_output=True, text=True, check=False)
    if told.returncode != 0:
        sys.exit(told.stderr)
    wanted = set(sources())
    return {file["file"]: [line for line in file["lines"] if not line.get("gcovr/noncode")]
            for file in json.loads(told.stdout)["files"] if file["file"] in wanted}


def gaps(path, lines):
    text = (ROOT / path).read_text(encoding="utf-8").split("\n")
    for line in lines:
        number = line["line_number"]
        missed = sum(branch["count"] == 0 for branch in line["branches"])
        if line["count"] == 0:
            yield f"{path}:{number}  not run       {text[number - 1].strip()}"
        elif missed:
            yield f"{path}:{number}  {missed} of {len(line['branches'])} missed  {text[number - 1].strip()}"


def main():
    configure(ROOT, "coverage")
    for old in BUILD.rglob("*.gcda"):
        old.unlink()
    made, output = build_programs(BUILD, programs(BUILD))
    if not made:
        sys.exit(output)
    for test in programs(BUILD):
        if not test.passes():
            sys.exit(f"{test.name} fails")

    counts = {folder: Count() for folder in FOLDERS}
    files = measured()
    for path, lines in sorted(files.items()):
        for line in lines:
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
