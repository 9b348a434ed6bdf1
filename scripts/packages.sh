# What the scripts need from the Debian archive, in one place. Sourced, not run.
#
# One line for each package: how its presence is seen (a command, or a file pattern), its name, and
# what it is for. Looking for the thing itself is quicker than asking the package manager, and it
# accepts a tool that came from elsewhere.
# shellcheck shell=bash disable=SC2034,SC2154  # groups go by name; build_dir comes from setup.sh

build_packages=(
    'cmake        cmake        configures the build'
    'ninja        ninja-build  runs it'
)

windows_packages=(
    'x86_64-w64-mingw32-g++-posix  g++-mingw-w64-x86-64-posix  cross-compiles the product; POSIX threads, as std::thread in the host and the tests needs them'
    'x86_64-w64-mingw32-gcc-posix  gcc-mingw-w64-x86-64-posix  links the DLL as C'
    'x86_64-w64-mingw32-windres    binutils-mingw-w64-x86-64   compiles version resources and manifests'
    'ld.lld                        lld                         links the product'
    'llvm-objcopy                  llvm                        splits off its debug information'
    'wine                          wine                        runs the product'
    'wine                          wine64                      the 64-bit loader: wine alone would accept the 32-bit one'
)

native_packages=(
    'g++                                     g++               builds on the stand-in platform'
    '/usr/share/mingw-w64/include/windows.h  mingw-w64-common  the declarations of the platform'
)

test_packages=(
    '/usr/include/gtest/gtest.h  libgtest-dev  the test framework'
    '/usr/src/googletest         googletest    its sources, built for Windows'
    'python3                     python3       looks into the library file; runs scripts/lint'
)

sanitizer_packages=(
    'clang++                                                     clang            builds with sanitizers'
    '/usr/lib/llvm-*/lib/clang/*/lib/linux/libclang_rt.asan-*.a  libclang-rt-dev  the sanitizers themselves, which clang only recommends'
    'llvm-symbolizer                                             llvm             names and lines in what the sanitizers report'
)

bench_packages=(
    '/usr/include/benchmark/benchmark.h  libbenchmark-dev  times the library on the stand-in'
)

lint_packages=(
    'clang-format  clang-format  layout of the sources'
    'clang-tidy    clang-tidy    static analysis and naming'
    'cppcheck      cppcheck      static analysis, a second opinion'
    'shellcheck    shellcheck    static analysis of the scripts'
    'yamllint      yamllint      syntax of the build server workflow'
)

# Without them the tests of the examples and of pkg-config are skipped.
example_packages=(
    'mcs         mono-mcs      compiles the C# and PowerShell examples'
    'mono        mono-runtime  runs them'
    'pkg-config  pkg-config    finds the installed library as a packager would'
)

package_packages=(
    'llvm-dlltool  llvm     makes the import library for MSVC'
    'python3       python3  writes the archives'
)

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
    for group in "$@"; do
        local -n lines="${group}_packages"
        local line
        for line in "${lines[@]}"; do
            read -r probe package _reason <<<"$line"
            is_present "$probe" || missing+=("$package")
        done
    done
    printf '%s' "${missing[*]}"
}

has_packages() {
    [[ -z $(missing_packages "$@") ]]
}

# Finds out how to become root; fails where there is no way that asks nothing.
find_root() {
    as_root=()
    ((EUID != 0)) || return 0
    as_root=(sudo -n)
    command -v sudo >/dev/null && sudo -n true 2>/dev/null
}

apt_get() {
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get -q -y -o DPkg::Lock::Timeout=300 "$@" </dev/null >>"$build_dir/packages.log" 2>&1
}

# Never removes anything: a machine with another Wine, say, keeps it.
install_packages() {
    apt_get install --no-install-recommends --no-remove "$@"
}

# Installs what the named groups miss, as far as that is possible: the caller looks at
# has_packages, since a group that cannot be had is no reason to do without the others.
ensure_packages() {
    local -a missing
    read -r -a missing <<<"$(missing_packages "$@")" || true
    ((${#missing[@]} > 0)) || return 0

    if ! command -v apt-get >/dev/null || ! find_root; then
        status "not installed, and neither root nor sudo to install them: ${missing[*]}"
        return 0
    fi
    status "installing ${missing[*]}"
    apt_get update || status "apt-get update failed, trying with the package lists at hand"
    install_packages "${missing[@]}" && return 0

    local group
    for group in "$@"; do
        read -r -a missing <<<"$(missing_packages "$group")" || true
        ((${#missing[@]} == 0)) || install_packages "${missing[@]}" ||
            status "could not install ${missing[*]} (see $build_dir/packages.log)"
    done
}
