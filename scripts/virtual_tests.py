"""The sources that decide what the receiver does, and the tests that prove them: all of them in virtual time or without
time at all. What mutants.py and coverage.py have in common.
"""
import collections
import dataclasses
import json
import os
import pathlib
import resource
import subprocess

ROOT = pathlib.Path(__file__).resolve().parent.parent

# A path belongs to the first of these that it begins with.
FOLDERS = ("base", "client_link", "surface", "ptsl", "screen", "model", "app/receiver_")
UNIT_TESTS = ("base", "client_link", "surface", "ptsl", "screen", "model", "app")
SPANNING_TESTS = ("fuzz", "tests/bank_map", "tests/client_protocol", "tests/studio", "tests/track_metadata",
                  "tests/ptsl_client", "tests/simulated_scripting", "tests/simulated_screen", "tests/simulation")

SIMULATED_SESSIONS = "25"
MEMORY = 8 << 30  # bytes; an endless loop harms nobody else
PATIENCE = 600    # seconds on the clock, for a program that waits for nothing


@dataclasses.dataclass
class Program:
    name: str
    folder: str
    command: list
    limit: int = PATIENCE  # seconds of processor time, which other work on the computer does not lengthen
    # For mutants.py: its content when nothing is changed, and how many changes it has noticed in which folder.
    unchanged: str = ""
    noticed: collections.Counter = dataclasses.field(default_factory=collections.Counter)

    def restrain(self):
        resource.setrlimit(resource.RLIMIT_AS, (MEMORY, MEMORY))
        resource.setrlimit(resource.RLIMIT_CPU, (self.limit, self.limit))

    def passes(self):
        command = self.command + (["--gtest_fail_fast"] if "--gtest_brief=1" in self.command else [])
        if self.name == "simulation_tests":
            command += ["--seeds", SIMULATED_SESSIONS]
        try:
            ended = subprocess.run(command, timeout=PATIENCE, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                                   preexec_fn=self.restrain, check=False)
        except subprocess.TimeoutExpired:
            return False
        return ended.returncode == 0


def sources(folders=FOLDERS):
    """The paths of the sources and headers below the folders, tests left out."""
    listed = subprocess.run(["git", "ls-files", "*.cpp", "*.h"], cwd=ROOT, capture_output=True, text=True, check=True)
    return [path for path in listed.stdout.split() if path.startswith(tuple(folders))
            and not path.endswith("_test.cpp") and "/testing/" not in path]


def configure(tree, preset, *options):
    """Where the presets are newer than the last time."""
    made = tree / "build" / preset / "build.ninja"
    if not made.exists() or made.stat().st_mtime < (tree / "CMakePresets.json").stat().st_mtime:
        subprocess.run(["cmake", "--preset", preset, *options], cwd=tree, check=True, stdout=subprocess.DEVNULL)


def programs(build):
    """The tests of a build folder: those beside the sources, then the spanning ones in their order. CTest knows a
    program's command once it is built."""
    shown = subprocess.run(["ctest", "--test-dir", build, "--show-only=json-v1"], capture_output=True, text=True,
                           check=True)
    order = UNIT_TESTS + SPANNING_TESTS
    found = []
    for test in json.loads(shown.stdout)["tests"]:
        properties = {each["name"]: each["value"] for each in test.get("properties", ())}
        folder = os.path.relpath(properties["WORKING_DIRECTORY"], build)
        if folder in order:
            found.append(Program(test["name"], folder, test.get("command", [])))
    return sorted(found, key=lambda program: order.index(program.folder))


def build_programs(build, tests):
    """Whether they could be built, and what was said."""
    made = subprocess.run(["cmake", "--build", build, "--target", *[test.name for test in tests]],
                          capture_output=True, text=True, check=False)
    return made.returncode == 0, made.stdout + made.stderr
