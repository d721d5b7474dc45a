#!/usr/bin/env bash
# Installs what is missing, builds with warnings as errors, runs every test; then those for Windows
# under Wine, as far as this machine has what they need.
#   ./scripts/test.sh [dev|asan|release]
set -euo pipefail
. "$(dirname "$0")/lib.sh"

preset=${1:-dev}
# shellcheck disable=SC2086
install_missing $build_packages
configure_and_build "$preset"
cd "$root"
ctest --preset "$preset" -j "$(nproc)"
[ "$preset" != dev ] || "$root/scripts/test-windows.sh"
