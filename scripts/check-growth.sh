#!/usr/bin/env bash
# Counts, with valgrind, the instructions of loading N and 2 N tags of every shape, and fails when the second is more
# than 2.2 times the first. Counts do not depend on how busy the machine is.
# usage: scripts/check-growth.sh [BUILD_DIRECTORY [N [SHAPE...]]]     N is 16000 unless given
set -euo pipefail
cd "$(dirname "$0")/.."

build=${1:-build/release}
tags=${2:-16000}
probe=$build/bin/load_probe
[ -x "$probe" ] || { echo "$probe is missing: build with -DZUL_TESTS=ON" >&2; exit 2; }
if [ $# -gt 2 ]; then
    shapes=("${@:3}")
else
    mapfile -t shapes < <("$probe" 2>&1 | sed -n 's/^  //p')
fi

instructions() { # SHAPE TAGS
    valgrind --tool=callgrind --callgrind-out-file=/dev/null --toggle-collect=measuredLoad "$probe" "$1" "$2" 2>&1 |
        sed -n 's/.*Collected : *//p'
}

failed=0
printf '%-22s %14s %14s %6s\n' shape "$tags tags" "$((2 * tags)) tags" growth
for shape in "${shapes[@]}"; do
    once=$(instructions "$shape" "$tags")
    twice=$(instructions "$shape" "$((2 * tags))")
    verdict=$(awk -v a="$once" -v b="$twice" 'BEGIN { g = b / a; printf "%6.3f%s", g, (g > 2.2 ? " TOO MUCH" : "") }')
    printf '%-22s %14s %14s %s\n' "$shape" "$once" "$twice" "$verdict"
    case $verdict in *MUCH) failed=1 ;; esac
done
exit "$failed"
