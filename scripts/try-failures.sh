#!/usr/bin/env bash
# Makes every allocation and every call about files fail, each in every way, and prints for each scenario how many calls it
# makes, how many runs were tried, and how they ended. Takes minutes: the tests of the same names leave most points out.
# usage: scripts/try-failures.sh [BUILD_DIRECTORY]
set -euo pipefail
cd "$(dirname "$0")/.."

build=${1:-build/release}
for program in fault_tests program_fault_tests; do
    [ -x "$build/bin/$program" ] || { echo "$build/bin/$program is missing: build with -DZUL_TESTS=ON" >&2; exit 2; }
done

# The rows of the table; everything else of a program that fails.
run() { # PROGRAM
    local output result=0
    output=$(ZUL_FAULTS=all "$build/bin/$1" 2>/dev/null) || result=$?
    if [ "$result" -eq 0 ]; then
        grep -aE ' (memory|files ) +[0-9]' <<<"$output"
    else
        echo "$output"
    fi
    return "$result"
}

printf '%-40s %s %8s%8s   %s\n' scenario fails. calls runs outcomes
run fault_tests
run program_fault_tests
