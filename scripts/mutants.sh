#!/usr/bin/env bash
# Makes seeded mutants of the code that loads, saves and looks after directories (comparisons swapped, numbers off by one,
# checks dropped), runs the tests on each, and fails when they notice less than 95 % of them. What survives is shown.
# scripts/mutants/equivalent.txt names mutants that do what the original does: they are passed over, like those that do not
# compile. Needs root: each mutant is shut in where it can harm nothing.
# usage: scripts/mutants.sh [--count 300] [--seed 1] [--jobs N] [--only PATTERN]
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/steps.sh"

[ "$(id -u)" -eq 0 ] || { echo "needs root, to shut the mutants in" >&2; exit 2; }
build=$root/build/mutants
programs=(platform_tests zullib_tests zulrt_tests allocation_tests runtime_allocation_tests)
# Undefined behaviour and places outside of a container end a mutant, as they do in the sanitized tests.
checks="-D_GLIBCXX_ASSERTIONS -fsanitize=undefined -fsanitize-undefined-trap-on-error"
quietly "Installing what is missing" "$root/scripts/dependencies.sh" build test ci
quietly "Configuring" cmake -S "$root" -B "$build" -G Ninja -DZUL_TESTS=ON -DCMAKE_BUILD_TYPE=Debug \
    -DCMAKE_C_FLAGS_DEBUG=-O0 -DCMAKE_CXX_FLAGS_DEBUG="-O0 $checks"
quietly "Building" cmake --build "$build" -j "$jobs" --target "${programs[@]}"
exec nice -n 19 python3 -B "$root/scripts/mutants" --jobs "$jobs" --build "$build" "$@"
