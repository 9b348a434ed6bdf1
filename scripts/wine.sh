# Runs Wine in the project's own prefix, and stops it at the end. Sourced, not run.
# shellcheck shell=bash disable=SC2154  # build_dir comes from setup.sh

# WINEDEBUG also silences Debian's advice to install 32-bit Wine. The overrides stop offers to
# download .NET and a browser engine, menu entries on the desktop, messages about a missing Wayland,
# and the debugger, so that a crashed program ends at once with its own status.
export WINEDEBUG=-all
export WINEARCH=win64
export WINEDLLOVERRIDES='mscoree=;mshtml=;winemenubuilder.exe=d;winewayland.drv=d;winedbg.exe=d'
# The caller may have a prefix of its own, whose programs must not be stopped at the end.
unset WINEPREFIX

fill_prefix() {
    unset DISPLAY WAYLAND_DISPLAY
    timeout --foreground 300 wine wineboot --init &&
        # A new prefix shows Windows 7 to programs.
        timeout --foreground 60 wine winecfg -v win10 &&
        timeout --foreground 60 wineserver -w
}

# Sets WINEPREFIX. Wine would refuse a prefix of another user's, as after a run with sudo.
use_wine() {
    local prefix=$build_dir/wine-prefix
    [[ ! -e $prefix || -O $prefix ]] || prefix+=-$EUID
    export WINEPREFIX=$prefix
    if [[ ! -e $prefix/complete ]]; then
        status "creating a Wine prefix in build/${prefix##*/}"
        rm -rf "$prefix"
        mkdir "$prefix"
        fill_prefix >"$prefix.log" 2>&1 || {
            tail -n 20 "$prefix.log" >&2
            return 1
        }
        touch "$prefix/complete"
    fi
    # The tests do not need Windows' services, and starting them takes longer than all the rest.
    WINEDLLOVERRIDES+=';services.exe=d'
}

stop_wine() {
    [[ -z ${WINEPREFIX-} ]] || wineserver -k 2>/dev/null || true
}
