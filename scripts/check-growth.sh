#!/usr/bin/env bash
# Counts, with valgrind, the instructions that N and 2 N tags of every shape cost each probe (load_probe: a load;
# design_probe: a load as a design and a walk over it; merge_probe: a merge), and fails when the second count is more than
# 2.2 times the first. Counts do not depend on how busy the machine is.
# usage: scripts/check-growth.sh [BUILD_DIRECTORY [N [SHAPE...]]]     N is 8000 unless given
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/steps.sh

build=${1:-build/release}
tags=${2:-8000}
probes=()
for probe in load_probe design_probe merge_probe; do
    [ -x "$build/bin/$probe" ] || { echo "$build/bin/$probe is missing: build with -DZUL_TESTS=ON" >&2; exit 2; }
    probes+=("$build/bin/$probe")
done

instructions() { # PROBE SHAPE TAGS
    valgrind --tool=callgrind --callgrind-out-file=/dev/null --toggle-collect=measuredLoad "$1" "$2" "$3" 2>&1 |
        sed -n 's/.*Collected : *//p'
}

measure() { # PROBE SHAPE TAGS
    local once twice growth
    once=$(instructions "$1" "$2" "$3")
    twice=$(instructions "$1" "$2" $((2 * $3)))
    growth=$(awk -v a="$once" -v b="$twice" 'BEGIN { g = b / a; printf "%6.3f%s", g, (g > 2.2 ? " TOO MUCH" : "") }')
    printf '%-13s %-22s %14s %14s %s\n' "${1##*/}" "$2" "$once" "$twice" "$growth"
    case $growth in *MUCH) return 1 ;; esac
}
export -f instructions measure

printf '%-13s %-22s %14s %14s %6s\n' probe shape "$tags tags" "$((2 * tags)) tags" growth
for probe in "${probes[@]}"; do
    mapfile -t shapes < <("$probe" 2>&1 | sed -n 's/^  //p')
    for shape in "${shapes[@]}"; do
        if [ $# -le 2 ] || [[ " ${*:3} " == *" $shape "* ]]; then
            printf '%s\n%s\n%s\n' "$probe" "$shape" "$tags"
        fi
    done
done | xargs -r -n 3 -P "$jobs" bash -c 'measure "$@"' measure
