# shellcheck shell=bash
# Sourced by the trials of tools/try-desktops. Each runs as a user on a desktop of its own, leaves
# what it has seen in /results, and ends with a sentence and status 1 if the engine is not used.
set -euo pipefail
program=${0##*/}
engine=/usr/games/kestran
export LANG=C.UTF-8

# fail SENTENCE
fail() {
    shoot "$program-failed" 2> /dev/null || true
    cp "$HOME"/*.log /results 2> /dev/null || true
    echo "try-desktops: $program: $1" >&2
    exit 1
}

# eventually SECONDS SENTENCE COMMAND...: waits until the command succeeds, or fails.
eventually() {
    local end=$((SECONDS + $1)) sentence=$2
    shift 2
    until "$@" &> /dev/null; do
        ((SECONDS < end)) || fail "$sentence"
        sleep 0.5
    done
}

# Whether a window has the name, a regular expression.
hasWindow() {
    xdotool search --onlyvisible --name "$1"
}

# press WINDOW KEY...
press() {
    local window
    window=$(xdotool search --onlyvisible --name "$1" | tail -n 1)
    shift
    xdotool windowactivate --sync "$window" key "$@"
}

# hasLines COUNT EXPRESSION FILE...: whether the files have at least so many lines of that kind.
hasLines() {
    local count=$1 expression=$2
    shift 2
    (($(cat "$@" | grep -cE "$expression") >= count))
}

# A picture of all windows, without the empty desktop around them.
shoot() {
    import -window root "png:$HOME/screen.png"
    convert "$HOME/screen.png" -trim +repage "/results/$1.png"
}

# Ends a program that this trial has started, as its window manager would.
finish() {
    kill "$1"
    wait "$1" || true
}
