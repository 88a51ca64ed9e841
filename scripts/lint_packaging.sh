#!/usr/bin/env bash
# lint_packaging.sh: what the tools of a Linux desktop say about the files in packaging/, and shellcheck about scripts.
set -euo pipefail
cd "$(dirname "$0")/.."
made=$(mktemp -d)
trap 'rm -r "$made"' EXIT

desktop-file-validate packaging/com.tarnwick.lumbrine.desktop
appstreamcli validate --no-net --no-color packaging/com.tarnwick.lumbrine.metainfo.xml >"$made/appstream" ||
    { cat "$made/appstream"; exit 1; }
mandoc -T lint -W warning packaging/man/*.1
shellcheck .ci/run scripts/*.sh tests/packaging/*.sh
shellcheck --shell=bash packaging/completions/bash/*

# The unit as it stands, but for the program, which is not installed here.
service=lumbrine-headless.service
sed "s|^ExecStart=.*|ExecStart=$(type -P true)|" "packaging/$service" >"$made/$service"
XDG_RUNTIME_DIR=$made systemd-analyze --user --man=no verify "$made/$service"
# No more exposed than 1.5 of 10.
systemd-analyze security --offline=true --threshold=15 --no-pager "packaging/$service" >"$made/security" ||
    { cat "$made/security"; exit 1; }
