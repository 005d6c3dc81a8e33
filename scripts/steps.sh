# To be sourced: what the scripts share.

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
jobs=$(nproc)

# quietly DESCRIPTION COMMAND...: tells what is done, and shows the command's output only when it fails.
quietly() {
    local description=$1 log result=0
    shift
    echo "$description" >&2
    log=$(mktemp)
    "$@" >"$log" 2>&1 </dev/null || result=$?
    if [ "$result" -ne 0 ]; then
        cat "$log" >&2
        echo "FAILED ($result): $description" >&2
    fi
    rm -f "$log"
    return "$result"
}
