#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Starts HOST on the full screen of a pseudo-terminal, types commands, checks the screen, and quits.
#   tests/host/screen.sh HOST DOCUMENT
set -euo pipefail

host=$(realpath "$1")
document=$(realpath "$2")
directory=$(mktemp -d)
socket=$directory/tmux
export HOME=$directory TMUX=""
trap 'tmux -S "$socket" kill-server 2>/dev/null || true; rm -rf "$directory"' EXIT

show() {
    tmux -S "$socket" capture-pane -p
}

# expect TEXT waits until the screen shows it.
expect() {
    local i
    for ((i = 0; i < 300; ++i)); do
        if show | grep -qF -- "$1"; then
            return
        fi
        sleep 0.2
    done
    echo "The screen does not show '$1' but:" >&2
    show >&2
    exit 1
}

type_line() {
    tmux -S "$socket" send-keys -l "$1"
    tmux -S "$socket" send-keys Enter
}

cd "$directory"
cp "$document" document.xml
# The shell continues after the host, so that its exit status and the restored screen can be checked.
tmux -S "$socket" -f /dev/null new-session -d -x 90 -y 24 /bin/sh
type_line "'$host' --log host.log --config settings.xml document.xml; echo \"The status is \$?\""
expect "Loaded 'document.xml'"
type_line "text window/caption"
expect "Harbour & Sea"
tmux -S "$socket" resize-window -x 60 -y 15
type_line "text no/such 'a default'"
expect "default"
type_line "quit"
expect "The status is 0"
if show | grep -qF "Harbour & Sea"; then
    echo "The host has not restored the screen:" >&2
    show >&2
    exit 1
fi
grep -q "Log closed" host.log

# On a simple terminal the end of the input asks before changes are lost, and in the end reports them.
type_line "clear; TERM=dumb '$host' --log host.log --config settings.xml; echo \"The status is \$?\""
type_line "put a 1"
for answer in "drop or stay?" "drop or stay?" "The status is 1"; do
    tmux -S "$socket" send-keys C-d
    expect "$answer"
done
