# Short names for the everyday commands. The build itself is described by CMake presets (CMakePresets.json).
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
.PHONY: setup build run demo test bench simulate fuzz mutants coverage check format screenshots package check-package \
    test-web web-pictures

setup:
	@scripts/setup.sh

build: setup
	@scripts/build.sh release $(JOBS)

# Opens the window if there is a display; otherwise draws on the terminal. Prints the address for browsers, too.
run: build
	@if [ -n "$$DISPLAY$$WAYLAND_DISPLAY" ]; then program=lumbrine-demo-window; else program=lumbrine-demo; fi; \
	    scripts/with_gateway.sh $(BIN) $$program

# A tour that needs no keyboard: a scripted client moves faders, presses buttons and takes over control. Under 30 s.
# Browsers can look, and take over, at the address that it prints.
demo: build
	@scripts/with_gateway.sh $(BIN) lumbrine-demo --tour

# Two tests per processor, because most tests spend their time waiting.
test: build
	@ctest --preset release -j $$((2 * $(JOBS)))

# The page in a browser, also what takes minutes: lost networks, a large session.
test-web: build
	@LUMBRINE_BIN=$(BIN) web/tests/run.sh browser/*.test.js

# Takes pictures of the page on a phone, on its side, and on a tablet, in both languages, into build/pictures.
web-pictures: build
	@mkdir -p build/pictures
	@LUMBRINE_BIN=$(BIN) node web/tests/pictures.js build/pictures

bench: build
	@scripts/bench.sh $(BIN)

# make simulate SEEDS=10000
simulate: build
	@$(BIN)/simulation_tests --seeds $(SEEDS)

# make fuzz SECONDS=600; SINCE=COMMIT skips the fuzzers whose code has not changed since that commit
fuzz: setup
	@scripts/fuzz.sh $(SECONDS) $(JOBS) $(SINCE)

# make mutants COUNT=300 SEED=7
mutants: setup
	@scripts/mutants.py $(COUNT) $(SEED)

coverage: setup
	@/usr/bin/python3 scripts/coverage.py

check: setup
	@scripts/check.sh $(JOBS)

# Writes the Debian packages to build/package.
package: setup
	@scripts/package.sh $(JOBS)

# Installs the packages in a separate minimal Debian system (a chroot) and runs the programs there.
check-package: package
	@scripts/check_package.sh

format: setup
	@git ls-files '*.h' '*.cpp' '*.mm' | xargs clang-format-19 -i

# Takes the pictures for the README from the running programs.
screenshots: build
	@scripts/screenshots.sh $(BIN)
