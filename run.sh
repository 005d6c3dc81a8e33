#!/usr/bin/env bash
# Builds the program and prints what is inside the given design files, or inside the sample design.
# usage: ./run.sh [FILE...]
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/scripts/steps.sh"

release=$root/build/release
quietly "Installing what is missing" "$root/scripts/dependencies.sh" build
quietly "Configuring" cmake -S "$root" --preset release
quietly "Building" cmake --build "$release" --target zul sample_design -j "$jobs"
if [ $# -eq 0 ]; then
    set -- "$release/share/zulrt/sample.zul"
fi
exec "$release/bin/zul" info "$@"
