# Wine in prefixes of the project's own, without a display, and nothing left running. Sourced.
# shellcheck shell=bash disable=SC2154  # build_dir comes from setup.sh

# No debug output, which also silences Debian's advice to install the 32-bit half; no offers to
# download .NET and a browser engine; no menu entries on the developer's desktop; no debugger, so
# that a crashed program ends at once and with a status of its own.
export WINEDEBUG=-all
export WINEARCH=win64
export WINEDLLOVERRIDES='mscoree=;mshtml=;winemenubuilder.exe=d;winedbg.exe=d'

# The prefix that the script uses Wine in; empty when it does not.
wine_prefix=

# Wine refuses the prefix of another user, as after a run with sudo: each then has one.
own_prefix() {
    local prefix=$build_dir/wine-prefix
    [[ ! -e $prefix || -O $prefix ]] || prefix+=-$EUID
    printf '%s' "$prefix"
}

in_prefix() {
    local prefix=$1
    shift
    WINEPREFIX=$prefix "$@"
}

fill_prefix() {
    unset DISPLAY WAYLAND_DISPLAY
    export WINEPREFIX=$1
    timeout --foreground 300 wine wineboot --init || return 1
    # A new prefix says that it is Windows 7.
    timeout --foreground 60 wine winecfg -v win10 || return 1
    timeout --foreground 60 wineserver -w
}

remove_prefix() {
    [[ -d $1 ]] || return 0
    in_prefix "$1" wineserver -k || true
    rm -rf "$1"
}

is_prefix_of_this_wine() {
    local version
    { read -r version <"$1/wine-version"; } 2>/dev/null && [[ $version == "$(wine --version)" ]]
}

# Creates the prefix under another name first, so that one that exists is whole. Another version of
# Wine gets a new one: it would otherwise bring the old one up to date in the middle of a run.
ensure_prefix() {
    local prefix=$1 log=$1.log unfinished=$1.new
    ! is_prefix_of_this_wine "$prefix" || return 0
    status "creating a Wine prefix in build/${prefix##*/}"
    remove_prefix "$unfinished"
    # Wine would not create it in a directory of another user's.
    mkdir "$unfinished"

    wine_prefix=$unfinished
    local result=0
    attend fill_prefix "$unfinished" >"$log" 2>&1 || result=$?
    in_prefix "$unfinished" wineserver -k || true
    wine_prefix=
    if ((result != 0)); then
        show_log "$log"
        return 1
    fi
    wine --version >"$unfinished/wine-version"
    remove_prefix "$prefix"
    mv "$unfinished" "$prefix"
}

# Puts a fresh copy of a prefix into place, for tests that change its settings. The files are
# shared, which makes it quick; the registry, which Wine rewrites in place when it is shared, is not.
copy_prefix() {
    local from=$1 to=$2 file
    remove_prefix "$to"
    cp -al "$from" "$to" 2>/dev/null || cp -a "$from" "$to"
    for file in "$from"/*.reg; do
        cp --remove-destination "$file" "$to/"
    done
}

# Other runs may use the same prefix at this time: the last one to finish ends the server.
use_wine() {
    wine_prefix=$1
    export WINEPREFIX=$1
    exec 9>>"$1.lock"
    flock -s 9
}

stop_wine() {
    [[ -n $wine_prefix ]] || return 0
    if [[ ! -e $wine_prefix.lock ]] || flock -n 9; then
        in_prefix "$wine_prefix" wineserver -k 2>/dev/null || true
    fi
    exec 9>&-
    wine_prefix=
}
