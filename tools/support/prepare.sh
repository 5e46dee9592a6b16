# shellcheck shell=bash
# Sourced by the scripts that build: looks for the programs and libraries that a step
# needs and installs what is missing. Speaks on standard error, reads no standard input.

missing=()

# need PACKAGE PROBE...: the package is missing if none of the probes is there. A probe is
# a program or, if it begins with a slash, a file.
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

# Runs a command and keeps what it says to itself, unless it fails.
quietly() {
    local log status=0
    log=$(mktemp)
    "$@" < /dev/null > "$log" 2>&1 || status=$?
    ((status == 0)) || cat "$log" >&2
    rm -f "$log"
    return "$status"
}

# patiently WORDS COMMAND...: quietly, but standard error is told every 15 seconds that the work
# goes on.
patiently() {
    local words=$1 status=0 teller
    shift
    (
        trap 'kill "$(jobs -p)" 2> /dev/null; exit' TERM
        while true; do
            sleep 15 &
            wait
            kill -0 $$ 2> /dev/null || exit # the script was ended
            echo "... $words, $SECONDS s" >&2
        done
    ) &
    teller=$!
    quietly "$@" || status=$?
    kill "$teller" 2> /dev/null || true
    wait "$teller" 2> /dev/null || true
    return "$status"
}

# Makes the folder of all builds; a sentence and an end if nothing can be written there.
requireBuildFolder() {
    if ! mkdir -p build 2> /dev/null || [[ ! -w build ]]; then
        {
            echo "The folder $PWD/build cannot be written, and the build belongs there."
            echo "Copy the project to a folder of your own and start it there, or build elsewhere:"
            echo "cmake -S \"$PWD\" -B FOLDER && cmake --build FOLDER"
        } >&2
        exit 1
    fi
}

# Installs the packages that need() has found missing. Takes away none that is in their way.
installMissing() {
    ((${#missing[@]})) || return 0
    local asRoot=(env DEBIAN_FRONTEND=noninteractive)
    if ((EUID != 0)); then
        asRoot=(sudo "${asRoot[@]}")
    fi
    if ! command -v apt-get > /dev/null || ! command -v "${asRoot[0]}" > /dev/null; then
        echo "Please install these packages first: ${missing[*]}" >&2
        return 1
    fi
    echo "Installing ${missing[*]} ..." >&2
    # The lists of a fresh system are empty, those of an old one out of date.
    quietly "${asRoot[@]}" apt-get -q update
    quietly "${asRoot[@]}" apt-get -q -y --no-remove install --no-install-recommends \
        "${missing[@]}"
    missing=()
}

# A build folder remembers where its sources were and what builds it; forgets it if the project
# has moved, or if it is not for Ninja.
dropForeignBuild() {
    local cache=$1/CMakeCache.txt
    if [[ -e $cache ]] && ! { grep -qxF "CMAKE_HOME_DIRECTORY:INTERNAL=$PWD" "$cache" &&
        grep -qxF "CMAKE_GENERATOR:INTERNAL=Ninja" "$cache"; }; then
        rm -rf "$1"
    fi
}
