# shellcheck shell=bash
# Sourced by the trials of dev/try-desktops. Each one runs on a virtual screen, puts pictures and
# logs into /results, and exits with a message and status 1 if the engine is not used.
set -euo pipefail
program=${0##*/}
# shellcheck disable=SC2034 # used by the trials
engine=/usr/games/kestran
export LANG=C.UTF-8

# fail MESSAGE
fail() {
    shoot "$program-failed" 2> /dev/null || true
    cp "$HOME"/*.log /results 2> /dev/null || true
    echo "try-desktops: $program: $1" >&2
    exit 1
}

# eventually SECONDS MESSAGE COMMAND...: waits until the command succeeds, or fails with MESSAGE.
eventually() {
    local end=$((SECONDS + $1)) message=$2
    until "${@:3}" &> /dev/null; do
        ((SECONDS < end)) || fail "$message"
        sleep 0.5
    done
}

# hasWindow EXPRESSION: whether a window's name matches.
hasWindow() {
    xdotool search --onlyvisible --name "$1"
}

# press WINDOW KEY...
press() {
    xdotool windowactivate --sync "$(hasWindow "$1" | tail -n 1)" key "${@:2}"
}

# hasLines COUNT EXPRESSION FILE...: whether the files have COUNT matching lines.
hasLines() {
    (($(cat "${@:3}" | grep -cE "$2") >= $1))
}

# shoot NAME: takes a picture of all windows.
shoot() {
    import -window root "png:$HOME/screen.png"
    convert "$HOME/screen.png" -trim +repage "/results/$1.png"
}

# finish PROCESS: ends a program that this trial started.
finish() {
    kill "$1"
    wait "$1" || true
}

rm -f "$HOME/ready"
openbox --startup "touch $HOME/ready" &> "$HOME/openbox.log" &
eventually 30 "openbox does not start." test -e "$HOME/ready"
