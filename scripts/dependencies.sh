#!/usr/bin/env bash
# Installs the packages of the given groups that are missing. Does nothing and needs no network when none is.
# usage: scripts/dependencies.sh build|test|ci|field...
set -euo pipefail

packages_of() {
    case $1 in
    build) echo cmake ninja-build g++ zlib1g-dev libboost-dev libcli11-dev nlohmann-json3-dev ;;
    test) echo libgtest-dev libgmock-dev ;;
    ci) echo clang clang-format clang-tidy libclang-rt-14-dev libbenchmark-dev llvm python3 valgrind ;;
    field) # the formats that the benchmarks compare with
        echo capnproto flatbuffers-compiler libcapnp-dev libflatbuffers-dev libprotobuf-dev libsqlite3-dev nlohmann-json3-dev \
            protobuf-compiler
        ;;
    *)
        echo "usage: $0 build|test|ci|field..." >&2
        exit 2
        ;;
    esac
}

is_installed() {
    [ "$(dpkg-query -W -f '${db:Status-Status}' "$1" 2>/dev/null)" = installed ]
}

as_root() {
    if [ "$(id -u)" -eq 0 ]; then
        "$@"
    else
        sudo "$@"
    fi
}

missing=()
for group in "$@"; do
    packages=$(packages_of "$group")
    for package in $packages; do
        is_installed "$package" || missing+=("$package")
    done
done
if [ ${#missing[@]} -gt 0 ]; then
    echo "installing ${missing[*]}"
    as_root apt-get update -q
    as_root env DEBIAN_FRONTEND=noninteractive apt-get install -q -y --no-install-recommends "${missing[@]}"
fi
