#!/usr/bin/env bash
# lint_packaging.sh: runs the validators for the files in packaging/, and shellcheck on all scripts.
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

for service in lumbrine-headless.service lumbrine-web.service; do
    # The program is not installed here, so a copy of the unit with another program is checked.
    sed "s|^ExecStart=.*|ExecStart=$(type -P true)|" "packaging/$service" >"$made/$service"
    XDG_RUNTIME_DIR=$made systemd-analyze --user --man=no verify "$made/$service"
    # systemd rates a unit's exposure from 0 (best) to 10; the threshold of 15 means 1.5.
    systemd-analyze security --offline=true --threshold=15 --no-pager "packaging/$service" >"$made/security" ||
        { cat "$made/security"; exit 1; }
done
