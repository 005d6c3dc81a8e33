#!/usr/bin/env bash
# Measures what the tests of the libraries run of Common, Runtime and templates: lines, functions, and both sides of every
# condition, as the compiler saw them in the source; nothing that it generated counts. Fails when a line or a function is
# missing, when fewer than 98 % of the branches are taken, and when the branches that are missing are not exactly those that
# scripts/coverage/uncovered.txt gives reasons for.
#
# Every process counts, however it ends: the counters are shared memory of a file that child processes inherit.
# usage: scripts/coverage.sh
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/steps.sh"

build=$root/build/coverage
programs=(platform_tests zullib_tests allocation_tests zulrt_tests runtime_allocation_tests)
counts=$build/counts

run_tests() { # the library's own tests, and the host in C
    rm -rf "$counts"
    mkdir -p "$counts"
    export LLVM_PROFILE_FILE=$counts/%m%c.profraw
    printf '%s\0' "${programs[@]}" | xargs -0 -I {} -P "$jobs" env "$build/bin/{}" --gtest_brief=1 || return
    "$build/bin/c_interface" "$build/share/zulrt/sample.zul"
}

objects=()
for program in "${programs[@]}" c_interface; do objects+=(-object "$build/bin/$program"); done
objects+=(-object "$build/lib/libzulrt.so")

# Left out: the warning about inline functions that a source has but does not use; whoever uses them counts.
export_counts() { # FORMAT FILE
    llvm-cov export -format="$1" -instr-profile "$counts/all.profdata" "${objects[@]:1}" \
        "$root/Common" "$root/Runtime" "$root/templates" \
        >"$2" 2> >(grep -v 'functions have mismatched data' >&2)
}

quietly "Installing what is missing" "$root/scripts/dependencies.sh" build test ci
quietly "Configuring" cmake -S "$root" -B "$build" --preset coverage
quietly "Building" cmake --build "$build" -j "$jobs" --target "${programs[@]}" c_interface sample_design
quietly "Running the tests" run_tests
llvm-profdata merge -o "$counts/all.profdata" "$counts"/*.profraw
export_counts text "$counts/all.json"
export_counts lcov "$counts/all.lcov"
python3 "$root/scripts/coverage/report.py" "$root" "$counts/all.json" "$counts/all.lcov"
