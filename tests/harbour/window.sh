#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Starts qorharbour on a screen in memory and works with it by keys: console, typing, history, leaving with an answer.
#   window.sh PROGRAM
set -euo pipefail

folder=$(mktemp -d)
screen=0
cleanup() {
    kill "$harbour" "$screen" 2>/dev/null || true
    wait 2>/dev/null || true
    rm -rf "$folder"
}
harbour=
trap cleanup EXIT
exec 3>"$folder/display-number" 4<"$folder/display-number"
# A reset after the last client could disconnect a client that connects at that moment.
Xvfb -displayfd 3 -noreset -screen 0 800x600x24 >/dev/null 2>&1 &
screen=$!

fail() {
    echo "window.sh: $1" >&2
    cat "$folder"/*.txt "$folder"/data/*.log >&2 2>/dev/null || true
    exit 1
}
# await TEST... runs a test until it succeeds.
await() {
    for _ in $(seq 150); do
        if "$@" >/dev/null 2>&1; then
            return
        fi
        sleep 0.2
    done
    fail "in vain: $*"
}
enter() {
    xdotool type --delay 40 -- "$1"
    xdotool key Return
}

await test -s "$folder/display-number"
DISPLAY=:$(cat <&4)
export DISPLAY SDL_VIDEODRIVER=x11 QOR_USER_DATA_DIR=$folder/data
# What the X library keeps until the end is no leak of the program.
export ASAN_OPTIONS=detect_leaks=0
mkdir "$folder/data"
cat >"$folder/data/settings.xml" <<'SETTINGS'
<configuration><version>1</version><window><width>320</width><height>180</height></window><log><level>3</level></log></configuration>
SETTINGS
cd "$folder"
"$1" >output.txt 2>&1 &
harbour=$!
await xdotool search --name '^qorharbour$'
sleep 1
xdotool key F1
enter "screenshot first.tga"
await test -s first.tga
enter "add Comet sloop bay"
enter "settings-set window/width 400"
xdotool key Up Up Return
await grep -q "A ship with the name 'Comet' exists" data/qorharbour.log
enter "screenshot second.tga"
await test -s second.tga
[ "$(stat -c %s first.tga)" -eq $((18 + 320 * 180 * 3)) ] || fail "the first screenshot has another size"
[ "$(stat -c %s second.tga)" -eq $((18 + 400 * 180 * 3)) ] || fail "the window was not resized"
# Escape at the question returns to the console, which still takes commands.
enter quit
sleep 0.5
xdotool key Escape
enter "screenshot third.tga"
await test -s third.tga
# Escape closes the console, then asks about the change; y saves it.
xdotool key Escape
xdotool key Escape
kill -0 "$harbour" || fail "left without a question"
xdotool key y
wait "$harbour" || fail "ended with $?"
grep -q '<name>Comet</name>' data/scene.xml || fail "the scene was not saved"
grep -q '<width>400</width>' data/settings.xml || fail "the settings were not saved"
