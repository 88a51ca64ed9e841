"""bench_window.py BIN: measures what the window costs while Pro Tools plays, in percent of one core.

Runs lumbrine on the virtual X server Xvfb beside the simulated Pro Tools, which sends meters for 16 strips, and
measures its processor time: with the window shown and closed, with faders at rest and with all of them moving.
"""
import contextlib
import os
import pathlib
import subprocess
import sys
import tempfile
import time

BIN = pathlib.Path(sys.argv[1])
SPAN = 8.0
TRACKS = 16
PATIENCE = 20.0


@contextlib.contextmanager
def running(*command, **options):
    with subprocess.Popen(command, text=True, **options) as process:
        try:
            yield process
        finally:
            process.terminate()


def until(condition):
    limit = time.monotonic() + PATIENCE
    while not condition():
        if time.monotonic() > limit:
            sys.exit("bench_window.py: what was waited for did not come")
        time.sleep(0.05)


def succeeds(*command):
    return subprocess.run(command, check=False, capture_output=True).returncode == 0


def line_with(process, text):
    for line in process.stdout:
        if text in line:
            return line.strip()
    sys.exit(f"bench_window.py: nobody said '{text}'")


def processor_time(process):
    fields = pathlib.Path(f"/proc/{process.pid}/stat").read_text(encoding="utf-8").rpartition(")")[2].split()
    return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")


def share(process, pro_tools, faders):
    """Percent of a core over the span, while each fader is moved 25 times a second or rests."""
    before, began, step = processor_time(process), time.monotonic(), 0
    while time.monotonic() - began < SPAN:
        step += 1
        if faders:
            for track in range(1, TRACKS + 1):
                pro_tools.stdin.write(f"fader {track} {abs((step + 6 * track) % 100 - 50) / 50}\n")
            pro_tools.stdin.flush()
        time.sleep(0.04)
    return 100 * (processor_time(process) - before) / (time.monotonic() - began)


def close_window():
    window = subprocess.run(["xdotool", "search", "--onlyvisible", "--name", "^Lumbrine — Receiver$"], check=True,
                            capture_output=True, text=True).stdout.split()[0]
    subprocess.run(["xdotool", "windowfocus", "--sync", window, "key", "ctrl+w"], check=True)
    until(lambda: not succeeds("xdotool", "search", "--onlyvisible", "--name", "^Lumbrine — Receiver$"))


def main():
    quiet = {"stderr": subprocess.DEVNULL}
    with tempfile.TemporaryDirectory() as folder, contextlib.ExitStack() as started:
        screen = started.enter_context(running("Xvfb", "-displayfd", "1", "-screen", "0", "1280x900x24", "-nolisten",
                                               "tcp", "-noreset", stdout=subprocess.PIPE, **quiet))
        os.environ.update(DISPLAY=":" + screen.stdout.readline().strip(), QT_QPA_PLATFORM="xcb", LANGUAGE="en",
                          XDG_RUNTIME_DIR=folder, XDG_CONFIG_HOME=folder, XDG_STATE_HOME=folder,
                          QV_PORT="52814", QV_NO_BONJOUR="1",
                          JACK_DEFAULT_SERVER="lumbrine-bench", JACK_NO_START_SERVER="1",
                          DBUS_SESSION_BUS_ADDRESS="unix:path=/nonexistent")
        started.enter_context(running("jackd", "-r", "-S", "-p", "64", "-n", "lumbrine-bench", "-d", "dummy", "-r",
                                      "48000", "-p", "128", stdout=subprocess.DEVNULL, **quiet))
        until(lambda: succeeds("jack_lsp"))
        lumbrine = started.enter_context(running(BIN / "lumbrine", stdout=subprocess.PIPE, **quiet))
        line_with(lumbrine, "UDP listening")
        pro_tools = started.enter_context(running(BIN / "lumbrine-simulator", "--tracks", str(TRACKS), "--surfaces",
                                                  "2", "--no-scripting", stdin=subprocess.PIPE,
                                                  stdout=subprocess.DEVNULL, **quiet))
        line_with(lumbrine, "16")
        pro_tools.stdin.write("play\n")
        pro_tools.stdin.flush()
        costs = {}
        for window in ("shown", "closed"):
            for faders in (False, True):
                costs[window, faders] = share(lumbrine, pro_tools, faders)
            if window == "shown":
                close_window()
        for faders in (False, True):
            shown, closed = costs["shown", faders], costs["closed", faders]
            print(f"window, {'moving faders' if faders else 'meters only':<14}{shown:>6.1f} % of a core shown, "
                  f"{closed:>5.1f} % closed: {shown - closed:>4.1f} % for the window")


if __name__ == "__main__":
    main()
