"""mac_share.py: measures the share of the lines of platform/macos and app/macos that tests run on Linux. Prints each
file that has lines which never run, and the sums.

In files that the tests contain, llvm-cov counts the lines. The other files are Objective-C++, or call functions that
have no fake: none of their lines runs, and each indented line with code counts, which is about what llvm-cov counts.
"""
import os
import pathlib
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
BUILD = ROOT / "build" / "coverage"
PROGRAMS = ("macos_rules_tests", "macos_back_end_tests", "macos_shell_rules_tests")
FOLDERS = ("platform/macos", "app/macos")


def run(*command, **options):
    return subprocess.run(command, cwd=ROOT, check=True, **options)


def measured():
    """The lines of each measured file: a dictionary from the number of the line to how often it ran."""
    run("cmake", "--preset", "coverage", stdout=subprocess.DEVNULL)
    run("cmake", "--build", BUILD, "--target", *PROGRAMS, stdout=subprocess.DEVNULL)
    binaries, profiles = [], []
    for name in PROGRAMS:
        binaries.append(BUILD / "bin" / name)
        profiles.append(BUILD / f"{name}.profraw")
        run(binaries[-1], "--gtest_brief=1", env=os.environ | {"LLVM_PROFILE_FILE": str(profiles[-1])},
            stdout=subprocess.DEVNULL)
    merged = BUILD / "mac_share.profdata"
    run("llvm-profdata-19", "merge", "-sparse", *profiles, "-o", merged)
    objects = [argument for binary in binaries[1:] for argument in ("-object", binary)]
    report = run("llvm-cov-19", "export", "--format=lcov", f"--instr-profile={merged}", binaries[0], *objects,
                 capture_output=True, text=True).stdout
    files, lines = {}, {}
    for entry in report.splitlines():
        key, _, value = entry.partition(":")
        if key == "SF":
            lines = files.setdefault(value.removeprefix(f"{ROOT}/"), {})
        elif key == "DA":
            number, count = value.split(",")[:2]
            lines[int(number)] = max(lines.get(int(number), 0), int(count))
    return files


def code_lines(path):
    lines = (ROOT / path).read_text(encoding="utf-8").splitlines()
    return sum(line.startswith(" ") and line.strip() != "" and not line.strip().startswith("//") for line in lines)


def main():
    files = measured()
    total = ran = 0
    for folder in FOLDERS:
        for source in sorted((ROOT / folder).iterdir()):
            path = f"{folder}/{source.name}"
            if source.suffix not in (".cpp", ".h", ".mm") or source.stem.endswith("_test"):
                continue
            if source.suffix == ".h" and path not in files:
                continue  # declarations only, or inline code of files that are not measured
            counts = files.get(path)
            lines = len(counts) if counts else code_lines(path)
            run_lines = sum(count > 0 for count in counts.values()) if counts else 0
            if run_lines < lines:
                print(f"{run_lines:5} of {lines:4}  {path}")
            total += lines
            ran += run_lines
    print(f"{ran:5} of {total:4}  lines run on Linux: {ran / total:.1%}")
    return 0


if __name__ == "__main__":
    sys.exit(main())
