"""bench_idle.py BIN: measures what lumbrine-headless costs while nothing happens, with and without a client.

It counts the wake-ups (voluntary context switches of all threads) over some seconds, the threads, and the memory.
"""
import os
import pathlib
import socket
import subprocess
import sys
import tempfile
import time

PORT = 52813
SPAN = 10.0
LIMITS = {"without a client": 5, "with a client": 40}  # wake-ups a second


def status_of(path):
    fields = {}
    for line in path.read_text(encoding="utf-8").splitlines():
        name, _, value = line.partition(":")
        fields[name] = value.split()[0] if value.split() else ""
    return fields


def wakeups(process):
    tasks = pathlib.Path(f"/proc/{process.pid}/task").iterdir()
    return sum(int(status_of(task / "status")["voluntary_ctxt_switches"]) for task in tasks)


def measure(process, title, between=lambda: None):
    before, began = wakeups(process), time.monotonic()
    while time.monotonic() - began < SPAN:
        between()
        time.sleep(0.5)
    rate = (wakeups(process) - before) / (time.monotonic() - began)
    fields = status_of(pathlib.Path(f"/proc/{process.pid}/status"))
    kept = rate <= LIMITS[title]
    print(f"idle {title:<18}{rate:>7.1f} wake-ups/s  limit {LIMITS[title]:>2}  {fields['Threads']:>2} threads  "
          f"{int(fields['VmRSS']) / 1024:>6.1f} MiB  {'ok' if kept else 'MISSED'}")


def main():
    with tempfile.TemporaryDirectory() as folder:
        measure_all(dict(os.environ, QV_PORT=str(PORT), QV_NO_BONJOUR="1", JACK_NO_START_SERVER="1",
                         XDG_STATE_HOME=folder))


def measure_all(environment):
    program = str(pathlib.Path(sys.argv[1]) / "lumbrine-headless")
    with subprocess.Popen([program], env=environment, stdout=subprocess.PIPE, text=True) as process:
        try:
            for line in process.stdout:
                if "UDP" in line:
                    break
            measure(process, "without a client")
            with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as phone:
                phone.connect(("127.0.0.1", PORT))
                phone.setblocking(False)
                hello = bytes([1, 0, 0, 0, 0, 0, 0, 0, 0, 1])
                phone.send(hello)
                keep_alive = bytes([1, 7, 0, 0])
                measure(process, "with a client", lambda: phone.send(keep_alive))
        finally:
            process.terminate()

if __name__ == "__main__":
    main()
