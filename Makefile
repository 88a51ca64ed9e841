# Everything goes through CMake presets; this file only gives the everyday commands their short names.
#
#   make run     set up, build, and start the receiver beside the simulated Pro Tools
#   make test    set up, build, and pass all tests

SECONDS ?= 60
SEEDS ?= 500
COUNT ?= 100
SEED ?= 1
JOBS ?= $(shell nproc)
BIN := build/release/bin

.DEFAULT_GOAL := build
.PHONY: setup build run demo test bench simulate fuzz mutants coverage check format screenshots package check-package

setup:
	@scripts/setup.sh

build: setup
	@scripts/build.sh release $(JOBS)

# With the window where there is a display, else on the terminal.
run: build
	@if [ -n "$$DISPLAY$$WAYLAND_DISPLAY" ]; then $(BIN)/lumbrine-demo-window; else $(BIN)/lumbrine-demo; fi

# A tour without anybody at the keys: a scripted client moves, presses and takes over, in under 30 seconds.
demo: build
	@$(BIN)/lumbrine-demo --tour

# The tests wait more than they work.
test: build
	@ctest --preset release -j $$((2 * $(JOBS)))

bench: build
	@scripts/bench.sh $(BIN)

# make simulate SEEDS=10000
simulate: build
	@$(BIN)/simulation_tests --seeds $(SEEDS)

# make fuzz SECONDS=600; with SINCE=COMMIT only what has changed since then
fuzz: setup
	@scripts/fuzz.sh $(SECONDS) $(JOBS) $(SINCE)

# make mutants COUNT=300 SEED=7
mutants: setup
	@scripts/mutants.py $(COUNT) $(SEED)

coverage: setup
	@/usr/bin/python3 scripts/coverage.py

check: setup
	@scripts/check.sh $(JOBS)

# The Debian packages, in build/package.
package: setup
	@scripts/package.sh $(JOBS)

# Installs them on a bare Debian in a folder of its own, and uses them there.
check-package: package
	@scripts/check_package.sh

format: setup
	@git ls-files '*.h' '*.cpp' '*.mm' | xargs clang-format-19 -i

# The pictures of the README, from the running programs.
screenshots: build
	@scripts/screenshots.sh $(BIN)
