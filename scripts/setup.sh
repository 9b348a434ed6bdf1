# What the scripts share: messages, child processes, the lock and builds. Sourced, not run.
# shellcheck shell=bash

set -euo pipefail
unset CDPATH
# If the environment has no PATH, the shell uses a default one. CMake needs it too.
export PATH

# No command here reads standard input. If it was closed, this also opens it, because otherwise the
# next file that is opened would become standard input.
exec </dev/null

project_dir=$(cd -P -- "$(dirname -- "${BASH_SOURCE[0]}")/.." && pwd)
build_dir=$project_dir/build
mkdir -p "$build_dir"

# Only Debian's Python has the modules of Debian's packages, and another Python may come first on
# the path.
export Python3_ROOT_DIR=/usr

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

# --- One script at a time in this directory, because they share builds and Wine's server. ---

# The script runs itself again below flock, which holds the lock and passes it to no other process.
# All child processes are in one process group, so that they end if the script is ended.
end_group() {
    trap '' INT TERM HUP
    kill -TERM -- "-$group" 2>/dev/null || true
    for _ in {1..50}; do
        kill -0 -- "-$group" 2>/dev/null || return 0
        sleep 0.1
    done
    kill -KILL -- "-$group" 2>/dev/null || true
}

if [[ ${QBSUPPORT_LOCKED-} != "$build_dir" ]]; then
    flock -n "$build_dir/lock" true || status "waiting for another script to finish in this directory"
    trap 'exit 129' HUP
    trap 'exit 130' INT
    trap 'exit 143' TERM
    set -m
    QBSUPPORT_LOCKED=$build_dir flock --close "$build_dir/lock" "$BASH" "$0" "$@" &
    set +m
    group=$!
    trap end_group EXIT
    result=0
    wait "$group" || result=$?
    exit "$result"
fi
trap stop_wine EXIT

# --- Builds. ---

# configure_and_build <directory> <option of cmake>...: if the directory was moved or copied, or is
# of another compiler, the build starts afresh.
configure_and_build() {
    local configure=(cmake -S "$project_dir" -B "$@")
    { "${configure[@]}" || "${configure[@]}" --fresh; } && ninja -C "$1"
}

# build <name> <preset> [<option of cmake>]...: builds everything in build/<name>. If that fails, it
# shows the log without Ninja's progress.
build() {
    local log=$build_dir/$1.log
    status "building build/$1"
    configure_and_build "$build_dir/$1" --preset "$2" "${@:3}" >"$log" 2>&1 || {
        grep -v '^\[[0-9]*/[0-9]*\] ' "$log" | tail -n 60 >&2
        return 1
    }
}

# copy_product <name of a build> <directory in out/>: puts the product where its users look for it.
copy_product() {
    mkdir -p "$project_dir/out/$2"
    cp -ru "$build_dir/$1/product/." "$project_dir/out/$2"
}
