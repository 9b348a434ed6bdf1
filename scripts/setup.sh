# What the scripts share: messages, child processes, locks and builds. Sourced, not run.
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
# process group of its own, by which all that it started can be ended, and none of our locks, which
# a process that it leaves behind would go on holding.
attend() {
    local result=0
    set -m
    "$@" 7>&- 8>&- 9>&- &
    child=$!
    set +m
    wait "$child" || result=$?
    child=
    return "$result"
}

stop_child() {
    [[ -n $child ]] || return 0
    local _
    kill -TERM -- "-$child" 2>/dev/null || return 0
    for _ in {1..50}; do
        kill -0 -- "-$child" 2>/dev/null || return 0
        sleep 0.1
    done
    kill -KILL -- "-$child" 2>/dev/null || true
}

clean_up() {
    trap '' INT TERM HUP
    stop_child
    stop_wine
}

trap clean_up EXIT
trap 'exit 129' HUP
trap 'exit 130' INT
trap 'exit 143' TERM

# Compilers of this age lay out a sanitizer's shadow memory for addresses that newer kernels no
# longer keep to, unless address space randomization is off. Not every container allows that.
without_randomization() {
    if setarch --addr-no-randomize true 2>/dev/null; then
        exec setarch --addr-no-randomize "$@"
    fi
    exec "$@"
}

# --- Locks: descriptor 7 for a run of the tests, 8 for set-up, 9 for the use of Wine. ---

# take_lock <descriptor> <file>: waits for other runs in this directory.
take_lock() {
    eval "exec $1>>\"\$build_dir/\$2\""
    flock -n "$1" && return
    status "waiting for another run to finish"
    flock "$1"
}

# Runs a set-up step while no other script does one.
exclusively() {
    local result=0
    take_lock 8 setup.lock
    "$@" || result=$?
    exec 8>&-
    return "$result"
}

# --- Builds. ---

# The end of a log without Ninja's progress.
show_log() {
    grep -v '^\[[0-9]*/[0-9]*\] ' "$1" | tail -n 60 >&2
}

# Whether the build directory of a preset is configured for `purpose`: product, or tests, which
# includes the product.
is_configured() {
    local directory=$build_dir/$1 purpose=$2 stamp=$build_dir/$1/configured
    local configured_for configured_in configured_without
    [[ -f $directory/build.ninja && -f $stamp ]] || return 1
    [[ ! $project_dir/CMakePresets.json -nt $stamp ]] || return 1
    { read -r configured_for && read -r configured_in && read -r configured_without; } <"$stamp" ||
        return 1
    # A tool that was missing is not looked for again.
    [[ $configured_without == "$(missing_packages windows test package)" ]] || return 1
    # A build directory that was moved still points to the old place.
    [[ $configured_in == "$project_dir" ]] || return 1
    [[ $configured_for == "$purpose" || $configured_for == tests ]]
}

run_cmake() {
    cd "$project_dir"
    exec cmake "$@"
}

# The product alone is configured without the tests, which need more packages.
configure() {
    local preset=$1 purpose=$2 testing=OFF directory=$build_dir/$1
    ! is_configured "$preset" "$purpose" || return 0
    status "configuring build/$preset"
    [[ $purpose == product ]] || testing=ON
    mkdir -p "$directory"
    rm -f "$directory/configured"
    if ! attend run_cmake --fresh --preset "$preset" -DBUILD_TESTING=$testing \
        >"$directory/configure.log" 2>&1; then
        show_log "$directory/configure.log"
        return 1
    fi
    printf '%s\n' "$purpose" "$project_dir" "$(missing_packages windows test package)" \
        >"$directory/configured"
}

# Passes Ninja's output on, and says that something is being built when that is so.
announce_work() {
    local line announced=
    while IFS= read -r line; do
        if [[ -z $announced && $line == '['* ]]; then
            status "building build/$1"
            announced=yes
        fi
        printf '%s\n' "$line"
    done
}

# Ninja itself rather than through CMake, because it ends its compilers when it is told to end.
run_ninja() {
    local preset=$1
    shift
    ninja -C "$build_dir/$preset" "$@" 2>&1 | announce_work "$preset"
}

# build <preset> <purpose> [targets...]
build() {
    local preset=$1 purpose=$2 log=$build_dir/$1/build.log
    shift 2
    configure "$preset" "$purpose" || return 1
    attend run_ninja "$preset" "$@" >"$log" || {
        show_log "$log"
        return 1
    }
}
