# What the scripts share: messages, child processes, the lock and builds. Sourced, not run.
# shellcheck shell=bash

set -euo pipefail
unset CDPATH

# Nothing here asks anything. It also opens a standard input that was closed, which a file opened
# later would be taken for.
exec </dev/null

project_dir=$(cd -P -- "$(dirname -- "${BASH_SOURCE[0]}")/.." && pwd)
build_dir=$project_dir/build
mkdir -p "$build_dir"

# shellcheck source=scripts/packages.sh
source "$project_dir/scripts/packages.sh"
# shellcheck source=scripts/wine.sh
source "$project_dir/scripts/wine.sh"

status() {
    printf '%s: %s\n' "${0##*/}" "$*" >&2
}

die() {
    status "$*"
    exit 1
}

# --- Child processes: nothing that we started outlives us. ---

child=

# Runs a command and waits for it, so that a signal to the script is answered at once. It gets a
# process group of its own, by which all that it started can be ended, and not our lock, which a
# process that it leaves behind would go on holding.
attend() {
    local result=0
    set -m
    "$@" 9>&- &
    child=$!
    set +m
    wait "$child" || result=$?
    child=
    return "$result"
}

clean_up() {
    trap '' INT TERM HUP
    if [[ -n $child ]]; then
        kill -TERM -- "-$child" 2>/dev/null || true
        for _ in {1..50}; do
            kill -0 -- "-$child" 2>/dev/null || break
            sleep 0.1
        done
        kill -KILL -- "-$child" 2>/dev/null || true
    fi
    stop_wine
}

trap clean_up EXIT
trap 'exit 129' HUP
trap 'exit 130' INT
trap 'exit 143' TERM

# One script at a time in this directory: they share builds and Wine's server.
exec 9>>"$build_dir/lock"
flock -n 9 || status "waiting for another script to finish in this directory"
until flock -n 9; do
    attend flock "$build_dir/lock" true
done

# --- Builds. ---

# A build directory that was moved or copied, or one of another compiler, has to start afresh.
configure_and_build() {
    local configure=(cmake -S "$project_dir" --preset "$1")
    { "${configure[@]}" || "${configure[@]}" --fresh; } && ninja -C "$build_dir/$1" "${@:2}"
}

# build <preset> <target>...: shows the log, without Ninja's progress, when that fails.
build() {
    local log=$build_dir/$1.log
    status "building build/$1"
    attend configure_and_build "$@" >"$log" 2>&1 || {
        grep -v '^\[[0-9]*/[0-9]*\] ' "$log" | tail -n 60 >&2
        return 1
    }
}
