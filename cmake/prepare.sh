# shellcheck shell=bash
# Sourced by the scripts that build. Finds and installs missing programs and libraries, prints
# progress on stderr, and never reads stdin.

missing=()
optional=() # installed only along with missing ones; builds do without them

# need PACKAGE PROBE...: marks PACKAGE as missing unless one of the probes exists. A probe is a
# program or, if it begins with a slash, a file.
need() {
    local package=$1 probe
    shift
    for probe in "$@"; do
        case $probe in
        /*) [[ -e $probe ]] && return ;;
        *) command -v "$probe" > /dev/null && return ;;
        esac
    done
    missing+=("$package")
}

# needBuildTools [PROGRAM]: what building PROGRAM needs (default: all programs). Only kestran does
# without the libraries of the tools.
needBuildTools() {
    need g++ g++ c++ clang++
    need cmake cmake
    need ninja-build ninja
    [[ ${1:-} != kestran ]] || return 0
    need libcli11-dev /usr/include/CLI/CLI.hpp /usr/local/include/CLI/CLI.hpp
    need nlohmann-json3-dev /usr/include/nlohmann/json.hpp /usr/local/include/nlohmann/json.hpp
    [[ -e /usr/include/editline/readline.h ]] || optional=(libedit-dev)
}

# needWebTools: what building the page and the npm package needs beside needBuildTools.
needWebTools() {
    need emscripten emcc
    need nodejs node
    need npm npm
}

# Runs a command and shows its output only if it fails.
quietly() {
    local log status=0
    log=$(mktemp)
    "$@" < /dev/null > "$log" 2>&1 || status=$?
    ((status == 0)) || cat "$log" >&2
    rm -f "$log"
    return "$status"
}

# patiently TEXT COMMAND...: like quietly, but prints TEXT every 15 seconds.
patiently() {
    local text=$1 status=0 ticker
    shift
    (
        exec {never}<> <(:) # reading from it always times out
        until read -r -t 15 -u "$never"; do
            kill -0 $$ 2> /dev/null || exit # the script was killed
            echo "... $text, $SECONDS s" >&2
        done
    ) > /dev/null &
    ticker=$!
    quietly "$@" || status=$?
    kill "$ticker" 2> /dev/null || true
    wait "$ticker" 2> /dev/null || true
    return "$status"
}

# Creates build/, which holds all builds, or exits with an explanation.
requireBuildFolder() {
    if ! mkdir -p build 2> /dev/null || [[ ! -w build ]]; then
        printf '%s\n' "Cannot write to $PWD/build, where builds go. Copy the project to a folder of" \
            "your own, or build elsewhere: cmake -S \"$PWD\" -B FOLDER && cmake --build FOLDER" >&2
        exit 1
    fi
}

# Installs the packages that need() found missing. Never removes an installed package.
installMissing() {
    ((${#missing[@]})) || return 0
    local asRoot=(env DEBIAN_FRONTEND=noninteractive)
    ((EUID == 0)) || asRoot=(sudo "${asRoot[@]}")
    if ! command -v apt-get > /dev/null || ! command -v "${asRoot[0]}" > /dev/null; then
        echo "Please install these packages first: ${missing[*]}" >&2
        return 1
    fi
    echo "Installing ${missing[*]} ..." >&2
    # Package lists are empty on a fresh system and outdated on an old one.
    quietly "${asRoot[@]}" apt-get -q update
    local install=("${asRoot[@]}" apt-get -q -y --no-remove -o DPkg::Lock::Timeout=300 install
        --no-install-recommends)
    quietly "${install[@]}" "${missing[@]}"
    ((${#optional[@]} == 0)) || quietly "${install[@]}" "${optional[@]}" ||
        echo "Going on without ${optional[*]}." >&2
    missing=() optional=()
}

# Deletes a build folder that was configured for other sources or not for Ninja.
dropForeignBuild() {
    local cache=$1/CMakeCache.txt
    if [[ -e $cache ]] && ! { grep -qxF "CMAKE_HOME_DIRECTORY:INTERNAL=$PWD" "$cache" &&
        grep -qxF "CMAKE_GENERATOR:INTERNAL=Ninja" "$cache"; }; then
        rm -rf "$1"
    fi
}
