#!/usr/bin/env bash
# End-to-end tests of the player commands of jukarra-cli (play, remote, player): without a
# player, then against a real mpv with no sound device, and against mpv through its MPRIS
# plug-in on a private session bus. The parts that need mpv say so and are skipped when it is
# not installed.
# Usage: test_play.sh PATH_TO_JUKARRA_CLI
set -u

# The MPRIS part runs on a private session bus of its own.
if [ -z "${JK_PLAY_TEST_BUS:-}" ] && command -v dbus-run-session >/dev/null; then
    JK_PLAY_TEST_BUS=1 exec dbus-run-session -- bash "$0" "$@"
fi

CLI=${1:?usage: test_play.sh PATH_TO_JUKARRA_CLI}
CLI="$(cd "$(dirname "$CLI")" && pwd)/$(basename "$CLI")"
# shellcheck source=cli_test_support.sh
. "$(dirname "$0")/cli_test_support.sh"
MUSIC="$WORK/music"
mkdir -p "$MUSIC"

# Every mpv a test started, ended with the test by its process id.
PIDS=()
end_players() {
    for pid in "${PIDS[@]}"; do
        kill "$pid" 2>/dev/null
    done
    for pid in "${PIDS[@]}"; do
        for _ in $(seq 50); do
            kill -0 "$pid" 2>/dev/null || break
            sleep 0.1
        done
        kill -9 "$pid" 2>/dev/null
    done
    cleanup
}
trap end_players EXIT

# silent_song PATH SECONDS: MPEG-1 Layer III mono frames of silence (32 kbit/s, 48 kHz) that mpv
# plays.
silent_song() {
    python3 - "$1" "$2" <<'PY'
import sys
frame = bytes([0xFF, 0xFB, 0x14, 0xC4]) + bytes(92)
with open(sys.argv[1], "wb") as out:
    out.write(frame * ((int(sys.argv[2]) * 48000 + 1151) // 1152))
PY
}

# json_field NAME: the value of NAME in the JSON object in OUT.
json_field() {
    python3 -c 'import json,sys; v=json.loads(sys.stdin.read())[sys.argv[1]]; print("null" if v is None else v)' "$1" <<<"$OUT"
}

# wait_status NAME VALUE [RUN...]: polls "remote status --json" until NAME is VALUE (10 s).
wait_status() {
    local name=$1 value=$2
    shift 2
    for _ in $(seq 100); do
        capture "$@" remote status --json
        [ "$RC" -eq 0 ] && [ "$(json_field "$name")" = "$value" ] && return 0
        sleep 0.1
    done
    fail "status $name never became $value: $OUT"
    return 1
}

# remember_mpv DATA: the process id of the mpv answering on DATA/mpv.sock, ended at the end.
remember_mpv() {
    local pid
    pid=$(python3 - "$1/mpv.sock" <<'PY'
import json, socket, sys, time
for _ in range(100):
    try:
        s = socket.socket(socket.AF_UNIX)
        s.settimeout(2)
        s.connect(sys.argv[1])
        s.sendall(b'{"command":["get_property","pid"],"request_id":1}\n')
        f = s.makefile()
        while True:
            reply = json.loads(f.readline())
            if reply.get("request_id") == 1:
                print(reply["data"])
                sys.exit(0)
    except OSError:
        time.sleep(0.1)
PY
)
    [ -n "$pid" ] && PIDS+=("$pid")
}

# ---- Without a player ----
DATA="$WORK/data"
mkdir -p "$DATA"
silent_song "$MUSIC/one.mp3" 600
run() { capture "$CLI" --data-dir "$DATA" "$@"; }

run --set PlayerExe1=/no/such/mpv player
expect_rc 0 "player without a player"
expect_line "Kind: 6 (mpv)" "player: kind of /no/such/mpv"
expect_line "Reached by: $DATA/mpv.sock" "player: mpv's socket"
expect_line "Running: no" "player: not running"

run --set PlayerExe1=/no/such/mpv play "$MUSIC/one.mp3"
expect_rc 2 "play with no player installed"
[ "$ERR" = "jukarra-cli: Uh-oh... Player executable file not found.  Please check your Setup settings again." ] ||
    fail "play with no player installed: '$ERR'"
[ "$(cat "$DATA/templist.m3u")" = "$MUSIC/one.mp3"$'\r' ] || fail "templist.m3u: $(cat -A "$DATA/templist.m3u")"

for case in "/home/nadia/bin/audacious|7 (MPRIS player)|org.mpris.MediaPlayer2.audacious" \
    "/opt/winamp/winamp.exe|2 (Winamp)|" "/usr/bin/xmms|0 (none)|"; do
    IFS='|' read -r path kind bus <<<"$case"
    run --set "PlayerExe1=$path" player
    expect_line "Kind: $kind" "player: kind of $path"
    [ -z "$bus" ] || expect_line "Reached by: $bus" "player: bus of $path"
done
run --set PlayerExe1=/usr/bin/mpv --set MprisPlayer=vlc player --json
expect_line '{"Kind":7,"Name":"MPRIS player","Player":"/usr/bin/mpv","ReachedBy":"org.mpris.MediaPlayer2.vlc","Running":false}' "player --json with MprisPlayer"

run --set PlayerExe1=/no/such/mpv remote next
expect_rc 2 "remote next with no player running"
expect_one_error_line "remote next with no player running"
run --set PlayerExe1=/no/such/mpv remote status
expect_rc 0 "remote status with no player running"
expect_line "State: not running" "remote status with no player running"
run remote bogus
expect_rc 1 "remote bogus"
run remote next --json
expect_rc 1 "remote next --json"
run play
expect_rc 1 "play with no PATH"
run play "$MUSIC/vanished.mp3"
expect_rc 2 "play of a song that is not there"
expect_one_error_line "play of a song that is not there"

# ---- A real mpv ----
MPV=$(command -v mpv || true)
if [ -z "$MPV" ]; then
    echo "mpv is not installed: the tests against a real mpv are skipped"
    finish "player command"
    exit 0
fi
mkdir -p "$WORK/bin"
printf '#!/bin/sh\nexec %s --no-config --ao=null --really-quiet --no-terminal "$@"\n' "$MPV" >"$WORK/bin/mpv"
chmod +x "$WORK/bin/mpv"
PLAYER=(--set "PlayerExe1=$WORK/bin/mpv")
play() { capture "$CLI" --data-dir "$DATA" "${PLAYER[@]}" "$@"; }

mkdir -p "$MUSIC/folder"
for name in "a blank" "it's \"quoted\"" "ünïcödé"; do
    silent_song "$MUSIC/folder/$name.mp3" 600
done
play play "$MUSIC/folder"
expect_rc 0 "play a folder with mpv not running"
expect_line "Started mpv ($WORK/bin/mpv) with $DATA/templist.m3u" "the command-line road"
remember_mpv "$DATA"
wait_status Count 3 "$CLI" --data-dir "$DATA" "${PLAYER[@]}"
wait_status State playing "$CLI" --data-dir "$DATA" "${PLAYER[@]}"

play remote next
expect_rc 0 "remote next"
wait_status Index 1 "$CLI" --data-dir "$DATA" "${PLAYER[@]}"
play remote prev
wait_status Index 0 "$CLI" --data-dir "$DATA" "${PLAYER[@]}"
play remote pause
wait_status State paused "$CLI" --data-dir "$DATA" "${PLAYER[@]}"
play remote play
wait_status State playing "$CLI" --data-dir "$DATA" "${PLAYER[@]}"
play remote vol-down
expect_line "Volume: 95%" "remote vol-down"
play remote ahead
wait_status State playing "$CLI" --data-dir "$DATA" "${PLAYER[@]}"
[ "$(json_field Position | cut -d. -f1)" -ge 5 ] || fail "remote ahead: $OUT"

# Enqueue adds behind the song playing, without interrupting it.
play play --queue "$MUSIC/one.mp3"
expect_rc 0 "play --queue"
expect_line "Sent 1 songs to mpv ($WORK/bin/mpv)" "play --queue goes song by song"
wait_status Count 4 "$CLI" --data-dir "$DATA" "${PLAYER[@]}"
[ "$(json_field Index)" = 0 ] || fail "play --queue moved the song: $OUT"

# A new list replaces the old one whole, shuffled or not.
play play --shuffle "$MUSIC/folder" "$MUSIC/one.mp3"
expect_line "Sent 4 songs to mpv ($WORK/bin/mpv)" "play --shuffle to a running mpv"
wait_status Count 4 "$CLI" --data-dir "$DATA" "${PLAYER[@]}"
play remote status
expect_line "State: playing" "remote status in text"
expect_line "Count: 4" "remote status counts the list"

play remote stop
wait_status State stopped "$CLI" --data-dir "$DATA" "${PLAYER[@]}"
play remote close
expect_rc 0 "remote close"
wait_status State "not running" "$CLI" --data-dir "$DATA" "${PLAYER[@]}"

# ---- mpv through its MPRIS plug-in ----
PLUGIN=""
for path in /usr/lib/x86_64-linux-gnu/mpv-mpris/mpris.so /usr/lib/mpv-mpris/mpris.so /etc/mpv/scripts/mpris.so; do
    [ -f "$path" ] && PLUGIN=$path && break
done
if [ -z "$PLUGIN" ] || [ -z "${DBUS_SESSION_BUS_ADDRESS:-}" ]; then
    echo "mpv's MPRIS plug-in or a session bus is missing: the MPRIS tests are skipped"
    finish "player command"
    exit 0
fi
printf '#!/bin/sh\nexec %s --no-config --ao=null --really-quiet --no-terminal --script=%s "$@"\n' "$MPV" "$PLUGIN" >"$WORK/bin/mpv"
PLAYER=(--set "PlayerExe1=$WORK/bin/mpv" --set MprisPlayer=mpv)
play play "$MUSIC/folder"
expect_rc 0 "play through MPRIS"
remember_mpv "$DATA"
play player
expect_line "Reached by: org.mpris.MediaPlayer2.mpv" "player names the bus"
wait_status State playing "$CLI" --data-dir "$DATA" "${PLAYER[@]}"
play remote next
wait_status Title "it's \"quoted\".mp3" "$CLI" --data-dir "$DATA" "${PLAYER[@]}"
play remote pause
wait_status State paused "$CLI" --data-dir "$DATA" "${PLAYER[@]}"
play remote close
wait_status State "not running" "$CLI" --data-dir "$DATA" "${PLAYER[@]}"

finish "player command"
