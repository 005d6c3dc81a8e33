#!/usr/bin/env bash
# Runs the fuzz targets on their corpora, as many at a time as there are processors, and prints what each of them did.
# usage: scripts/fuzz.sh [--seconds N | --runs-per-target N | --full | --minimise] [--build DIRECTORY] [--jobs N]
#                        [--keep DIRECTORY] [TARGET...]
#   --seconds N          each target for so long (60 when nothing is said)
#   --runs-per-target N  each target for so many executions
#   --full               20 million loads, 5 million cycles, 3 million sequences of edits, 1 million payloads
#   --build DIRECTORY    targets that are built already; without it, those of the preset "fuzz" are built
#   --keep DIRECTORY     new inputs go there, by target, and from there into the next run
#   --minimise           runs nothing: fuzz/corpus becomes what is needed of it and of the new inputs
# What is found lies in the build's findings/, one file an input: TARGET FILE repeats it.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
source scripts/steps.sh

limit=(-max_total_time=60)
build=
keep=
targets=(load cycle edit payload)

usage() {
    sed -n '2,/^set/s/^# \{0,1\}//p' scripts/fuzz.sh >&2
    exit 2
}

full_runs() { # TARGET
    case $1 in
    load) echo 20000000 ;;
    cycle) echo 5000000 ;;
    edit) echo 3000000 ;;
    payload) echo 1000000 ;;
    esac
}

# Long inputs are slow and find nothing that short ones do not.
longest_input() { # TARGET
    case $1 in
    edit) echo 100 ;;
    *) echo 1024 ;;
    esac
}

# Files are made by the payload target: memory is faster than a disk.
temporary() { [ -w /dev/shm ] && echo /dev/shm || echo "${TMPDIR:-/tmp}"; }

# What a sanitizer keeps of each allocation, and how many freed ones, decides how fast the targets are: this is enough for
# inputs of a kilobyte.
sanitizer_options=malloc_context_size=2:max_malloc_fill_size=64:quarantine_size_mb=1:thread_local_quarantine_size_kb=64

fuzz_target() { # TARGET
    local target=$1 corpus=$keep/$1 log=$logs/$1 stop=("${limit[@]}") result=0 options
    [ "${limit[0]}" != full ] || stop=(-runs="$(full_runs "$target")")
    mkdir -p "$corpus" "$build/findings"
    # The power schedule of the fuzzer itself would take more time than the targets. Where others have the processors,
    # an input may take long without being slow.
    options=(-entropic=0 -reduce_inputs=0 -print_funcs=0 -timeout=300 -report_slow_units=300
        -max_len="$(longest_input "$target")" -dict="fuzz/dictionaries/$target.dict"
        -artifact_prefix="$build/findings/$target-")
    TMPDIR=$(temporary) ASAN_OPTIONS=$sanitizer_options "$build/bin/fuzz_$target" "${stop[@]}" "${options[@]}" \
        "$corpus" "fuzz/corpus/$target" "$build/fuzz/seeds/$target" >"$log" 2>&1 </dev/null || result=$?
    [ "$result" -eq 0 ] || touch "$log.failed"
}

# Inputs of the repository are short ones, few enough to be replayed with every test run.
minimise() { # TARGET
    local target=$1 merged
    merged=$(mktemp -d)
    "$build/bin/fuzz_$target" -merge=1 -max_len=600 "$merged" "fuzz/corpus/$target" "$keep/$target" \
        "$build/fuzz/seeds/$target" >"$logs/$target" 2>&1
    # Inputs with a name of their own were findings: they stay.
    find "fuzz/corpus/$target" -regextype posix-extended -regex '.*/[0-9a-f]{40}' -delete
    cp "$merged"/* "fuzz/corpus/$target/"
    rm -r "$merged"
    echo "$target: $(find "fuzz/corpus/$target" -type f | wc -l) inputs"
}

# Executions, executions a second, inputs in the corpus, features seen, findings.
row() { # TARGET
    local target=$1 log=$logs/$1 summary runs seconds corpus features findings
    summary=$(grep -E '^Done [0-9]+ runs' "$log" || true)
    runs=$(sed -nE 's/^stage: +([0-9]+) runs$/\1/p' "$log")
    seconds=$(sed -nE 's/^Done [0-9]+ runs in ([0-9]+) second.*/\1/p' <<<"$summary")
    corpus=$(sed -nE 's/.* corp: ([0-9]+)\/.*/\1/p' "$log" | tail -n 1)
    features=$(sed -nE 's/.* ft: ([0-9]+) .*/\1/p' "$log" | tail -n 1)
    findings=$(grep -c 'Test unit written' "$log" || true)
    [ ! -e "$log.failed" ] || findings="$findings FAILED"
    printf '%-10s %12s %8s %10s %8s %9s %9s\n' "$target" "${runs:-?}" "${seconds:-?}" \
        "$((${runs:-0} / (${seconds:-0} > 0 ? seconds : 1)))" "${corpus:-?}" "${features:-?}" "$findings"
}

report() {
    local target
    printf '%-10s %12s %8s %10s %8s %9s %9s\n' target executions seconds "per s" corpus features findings
    for target in "${targets[@]}"; do
        row "$target"
    done
    for target in "${targets[@]}"; do
        echo
        echo "$target: how far the executions came"
        sed -n 's/^stage: /  /p' "$logs/$target"
        [ ! -e "$logs/$target.failed" ] || cat "$logs/$target"
    done
}

wanted=()
while [ $# -gt 0 ]; do
    case $1 in
    --seconds) limit=(-max_total_time="$2") && shift 2 ;;
    --runs-per-target) limit=(-runs="$2") && shift 2 ;;
    --full) limit=(full) && shift ;;
    --minimise) limit=(minimise) && shift ;;
    --build) build=$2 && shift 2 ;;
    --jobs) jobs=$2 && shift 2 ;;
    --keep) keep=$2 && shift 2 ;;
    load | cycle | edit | payload) wanted+=("$1") && shift ;;
    *) usage ;;
    esac
done
[ ${#wanted[@]} -eq 0 ] || targets=("${wanted[@]}")

if [ -z "$build" ]; then
    build=build/fuzz
    quietly "building the fuzz targets" \
        sh -c "cmake --preset fuzz && cmake --build --preset fuzz -j $jobs"
fi
logs=$(mktemp -d)
trap 'rm -rf "$logs"' EXIT
keep=${keep:-$build/corpus}

if [ "${limit[0]}" = minimise ]; then
    for target in "${targets[@]}"; do
        minimise "$target"
    done
    exit
fi

running=0
for target in "${targets[@]}"; do
    fuzz_target "$target" &
    running=$((running + 1))
    if [ "$running" -ge "$jobs" ]; then
        wait -n || true
        running=$((running - 1))
    fi
done
wait
report
! compgen -G "$logs/*.failed" >/dev/null
