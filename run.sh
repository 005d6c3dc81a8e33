#!/usr/bin/env bash
# Builds the program and prints what is inside the given design files; or inside the sample design, which a host then
# loads from an installation.
# usage: ./run.sh [FILE...]
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/scripts/steps.sh"

release=$root/build/release
quietly "Installing what is missing" "$root/scripts/dependencies.sh" build
quietly "Configuring" cmake -S "$root" --preset release
quietly "Building" cmake --build "$release" --target zul sample_design load_design -j "$jobs"
if [ $# -ne 0 ]; then
    exec "$release/bin/zul" info "$@"
fi

sample=$release/share/zulrt/sample.zul
"$release/bin/zul" info "$sample"

installation=$(mktemp -d)
trap 'rm -rf "$installation"' EXIT
mkdir -p "$installation/Hardware Applets/kova-2625"
cp "$sample" "$installation/Hardware Applets/kova-2625/sample.zul"
echo
KOVADIR5_64=$installation "$release/examples/load_design" sample.zul 2625
