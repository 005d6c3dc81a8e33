#!/usr/bin/env bash
# Runs what the documents show, and fails when a piece of it fails.
# usage: scripts/check-docs.sh [BUILD_DIRECTORY [DOCUMENT...]]     build/release, README.md and docs/*.md unless given
#
# A block takes part when the word "runnable" follows the language behind its opening fence:
#
#     ```sh runnable             run by bash, which stops at the first command that fails
#     ```sh runnable exits=1     the same, but the block has to end with exit status 1
#     ```cpp runnable            compiled as C++20 without a warning; with a main() also linked, to ./a.out
#     ```c runnable              the same as C11, linked with the shared library alone
#
# The blocks of a document run one after the other in a temporary folder of the document, with the sample design there as
# sample.zul, the build's programs on PATH, and standard input empty. Later blocks find what earlier ones left behind.
set -euo pipefail
here=$PWD
root=$(cd "$(dirname "$0")/.." && pwd)

build=$(cd "$root" && realpath "${1:-build/release}")
sample=$build/share/zulrt/sample.zul
[ -f "$sample" ] || { echo "$sample is missing: build first" >&2; exit 2; }
if [ $# -gt 1 ]; then
    documents=("${@:2}")
else
    here=$root
    mapfile -t documents < <(cd "$root" && ls README.md docs/*.md 2>/dev/null)
fi

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

include_flags=()
for directory in Common/zullib/include Runtime/zulrt/include templates/common-templates; do
    if [ -d "$root/$directory" ]; then include_flags+=("-I$root/$directory"); fi
done
libraries=()
for library in libzulrt_static.a libzullib.a; do
    if [ -f "$build/lib/$library" ]; then libraries+=("$build/lib/$library"); fi
done

# Writes the marked blocks of DOCUMENT as FOLDER/<line of the first fence>.<language> and lists: line, language, status.
extract() { # DOCUMENT FOLDER
    awk -v folder="$2" '
        function refuse(line, why) {
            print FILENAME ":" line ": " why > "/dev/stderr"
            refused = 1
            exit 1
        }
        !inside && /^ *```/ {
            inside = 1; first = NR; file = ""; indent = match($0, /`/) - 1
            sub(/^ *```/, "")
            if ($2 == "runnable") {
                if ($1 !~ /^(sh|cpp|c)$/ || NF > 3 || (NF == 3 && $3 !~ /^exits=[0-9]+$/))
                    refuse(NR, "cannot run " $0)
                file = folder "/" NR "." $1
                printf "" > file
                print NR, $1, NF == 3 ? substr($3, 7) : 0
            }
            next
        }
        inside && /^ *```[ \t]*$/ { inside = 0; if (file != "") close(file); next }
        inside && file != "" { print substr($0, indent + 1) > file }
        END { if (inside && !refused) refuse(first, "the block has no end") }
    ' "$1"
}

compile() { # SOURCE
    local flags=(-std=c++20 -Wall -Wextra -Werror "${include_flags[@]}")
    if grep -q 'int main(' "$1"; then
        "${CXX:-c++}" "${flags[@]}" "$1" "${libraries[@]}" -lz -pthread -ldl
    else
        "${CXX:-c++}" "${flags[@]}" -fsyntax-only "$1"
    fi
}

compile_c() { # SOURCE
    "${CC:-cc}" -std=c11 -Wall -Wextra -Wpedantic -Werror "${include_flags[@]}" "$1" \
        -L"$build/lib" -Wl,-rpath,"$build/lib" -lzulrt -ldl
}

run_block() { # FILE LANGUAGE
    case $2 in
    sh) PATH="$build/bin:$PATH" bash -eu -o pipefail "$1" ;;
    cpp) compile "$1" ;;
    c) compile_c "$1" ;;
    esac
}

failed=0
count=0
for document in "${documents[@]}"; do
    blocks=$(mktemp -d -p "$work")
    folder=$(mktemp -d -p "$work")
    cp "$sample" "$folder/sample.zul"
    (cd "$here" && extract "$document" "$blocks") >"$blocks/list" || failed=1
    while read -r line language expected; do
        count=$((count + 1))
        status=0
        (cd "$folder" && run_block "$blocks/$line.$language" "$language") >"$work/output" 2>&1 </dev/null || status=$?
        if [ "$status" -ne "$expected" ]; then
            echo "$document:$line: the $language block ends with $status instead of $expected:" >&2
            sed 's/^/    /' "$work/output" >&2
            failed=1
        fi
    done <"$blocks/list"
done
echo "$count runnable blocks in ${#documents[@]} documents"
exit "$failed"
