# What the scripts need from the Debian archive, in one place. Sourced, not run.
# shellcheck shell=bash disable=SC2154  # build_dir comes from setup.sh

# The group, how a package's presence is seen (a command, or a file pattern), its name, and what it
# is for. Looking for the thing itself is quicker than asking the package manager, and it accepts a
# tool that came from elsewhere.
packages='
build    cmake                           cmake        configures the build
build    ninja                           ninja-build  runs it
build    /usr/include/CLI/CLI.hpp        libcli11-dev  reads the command line of qbreport
windows  x86_64-w64-mingw32-g++-posix    g++-mingw-w64-x86-64-posix  builds the product
windows  ld.lld-19                       lld-19           links the product
windows  llvm-objcopy-19                 llvm-19          splits off its debug information
windows  wine                            wine             runs the product
native   g++                             g++              builds on the stand-in for Windows
native   /usr/share/mingw-w64/include/windows.h  mingw-w64-common  the declarations of Windows
test     /usr/include/gtest/gtest.h      libgtest-dev     the test framework
test     Xvfb                            xvfb             a screen for qbreportw
test     /usr/lib/python3/dist-packages/pefile.py  python3-pefile  reads the library file
clang    clang++-19                      clang-19         builds with sanitizers
clang    /usr/lib/llvm-19/lib/clang/19/lib/linux/libclang_rt.asan-x86_64.a  libclang-rt-19-dev  the sanitizers
lint     clang-format-19                 clang-format-19  layout of the sources
lint     clang-tidy-19                   clang-tidy-19    static analysis and naming
lint     cppcheck                        cppcheck         static analysis, a second opinion
lint     shellcheck                      shellcheck       static analysis of the scripts
lint     yamllint                        yamllint         syntax of the build server workflow
example  mcs                             mono-mcs         compiles the C# and PowerShell examples
example  mono                            mono-runtime     runs them
example  pkg-config                      pkg-config       finds the library as a packager would
screenshot  import                       imagemagick      takes the picture of qbreportw
screenshot  /usr/share/wine/fonts/marlett.ttf  fonts-wine  the signs on the buttons of a window
package  python3                         python3          writes the archives
'

is_present() {
    case $1 in
        /*) compgen -G "$1" >/dev/null ;;
        *) command -v -- "$1" >/dev/null ;;
    esac
}

# Prints the packages of the named groups that are missing.
missing_packages() {
    local group probe package _reason
    local -a missing=()
    while read -r group probe package _reason; do
        [[ " $* " != *" $group "* ]] || is_present "$probe" || missing+=("$package")
    done <<<"$packages"
    printf '%s' "${missing[*]}"
}

has_packages() {
    [[ -z $(missing_packages "$@") ]]
}

# Asks no questions and removes no package, such as another Wine that is installed already.
apt_get() {
    local as_root=()
    ((EUID == 0)) || as_root=(sudo -n)
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -q -y --no-remove \
        -o DPkg::Lock::Timeout=300 "$@" >>"$build_dir/packages.log" 2>&1
}

# Installs the missing packages of the named groups. If one cannot be installed, the others still
# are. The caller asks has_packages for the result.
ensure_packages() {
    local -a missing
    local package
    read -r -a missing <<<"$(missing_packages "$@")" || true
    ((${#missing[@]} > 0)) || return 0
    status "installing ${missing[*]}"
    apt_get update || status "apt-get update failed, trying with the package lists at hand"
    apt_get install --no-install-recommends "${missing[@]}" && return 0
    for package in "${missing[@]}"; do
        apt_get install --no-install-recommends "$package" ||
            status "could not install $package (see $build_dir/packages.log)"
    done
}
