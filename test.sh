#!/usr/bin/env bash
# Builds everything and runs every test. Arguments are handed to ctest.
# usage: ./test.sh [CTEST ARGUMENT...]
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/scripts/steps.sh"

release=$root/build/release
quietly "Installing what is missing" "$root/scripts/dependencies.sh" build test
quietly "Configuring" cmake -S "$root" --preset release -DZUL_TESTS=ON
quietly "Building" cmake --build "$release" -j "$jobs"

# What passed is left out of the report; the summary stays.
ctest --test-dir "$release" --output-on-failure --no-tests=error -j "$jobs" "$@" </dev/null |
    grep --line-buffered -vE '^ *Start +[0-9]+: |^ *[0-9]+/[0-9]+ +Test +#[0-9]+: .* Passed +[0-9.]+ sec$'
