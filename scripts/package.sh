#!/usr/bin/env bash
# package.sh [JOBS]: makes the Debian packages in build/package and checks them with lintian; where rpmbuild is
# installed, RPM packages as well.
set -euo pipefail
cd "$(dirname "$0")/.."
jobs=${1:-$(nproc)}

scripts/build.sh package "$jobs" --target packaged_files
rm -f build/package/*.deb build/package/*.rpm
(umask 022 && cd build/package && cpack >cpack.log) || { cat build/package/cpack.log; exit 1; }
lintian --no-cfg --allow-root --fail-on error,warning build/package/*.deb
ls -sh build/package/*.deb
if command -v rpmbuild >/dev/null; then ls -sh build/package/*.rpm; fi
