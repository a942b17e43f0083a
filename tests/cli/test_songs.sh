#!/usr/bin/env bash
# End-to-end tests of the song commands of jukarra-cli (info, tag, silent, cache) on a fresh
# data folder, with small MP3 files copied from the test data.
# Usage: test_songs.sh PATH_TO_JUKARRA_CLI
set -u

CLI=${1:?usage: test_songs.sh PATH_TO_JUKARRA_CLI}
CLI="$(cd "$(dirname "$CLI")" && pwd)/$(basename "$CLI")"
SONGS="$(cd "$(dirname "$0")/../data/songs" && pwd)"
# shellcheck source=cli_test_support.sh
. "$(dirname "$0")/cli_test_support.sh"
DATA="$WORK/data"
MUSIC="$WORK/music"
mkdir -p "$DATA" "$MUSIC"

# run ARGS...: runs the tool on the data folder, leaving OUT, ERR and RC.
run() { capture "$CLI" --data-dir "$DATA" "$@"; }

json_field() {  # json_field LINE FIELD: prints one field of one JSON object
    python3 -c 'import json, sys; print(json.loads(sys.argv[1])[sys.argv[2]])' "$1" "$2"
}

# The cache knows a file's date to the second. A song written twice within a second would
# look unchanged, so every song the tests write is dated back to a moment of its own.
BACK=978307200
backdate() {
    BACK=$((BACK + 60))
    touch -d "@$BACK" "$@"
}

# Songs dated long ago, so that a tag written now always gives a new date.
cp "$SONGS/cbr64-id3v1.mp3" "$MUSIC/Plain.mp3"
cp "$SONGS/mpeg2-untagged.mp3" "$MUSIC/untagged_song.mp3"
backdate "$MUSIC"/*.mp3
PLAIN="$MUSIC/Plain.mp3"
UNTAGGED="$MUSIC/untagged_song.mp3"

# --- help ---
"$CLI" --help >"$WORK/out" 2>&1
for usage in "info \[--no-cache\] \[--json\] FILE" "tag set" "tag strip FILE" \
    "silent \[--size KB\] FILE" "cache stats" "cache dump \[--json\]"; do
    grep -q "^  $usage" "$WORK/out" || fail "--help does not list '$usage'"
done
"$CLI" info --help >"$WORK/out" 2>&1
grep -q '"Reserved":0,"Track":3' "$WORK/out" || fail "info --help does not show the JSON form"
grep -q 'nothing is saved' "$WORK/out" || fail "info --help does not tell of the desktop program"

# --- info on an empty data folder: a block per song, the cache and settings saved ---
run info "$PLAIN" "$UNTAGGED"
expect_rc 0 "info"
expect_line "Path:     $PLAIN" "info"
expect_line "Title:    Plain Title" "info"
expect_line "Album:    Plain Album - 04" "info"
expect_line "Genre:    Rock" "info"
expect_line "Track:    4" "info"
expect_line "Size:     4544" "info"
expect_line "Genre:    Unknown" "info of an untagged song"
expect_line "Title:" "info of an untagged song"
[ "$(grep -c '^Path:' <<<"$OUT")" -eq 2 ] || fail "info: not one block per song"
[ -z "$ERR" ] || fail "info: unexpected stderr '$ERR'"
[ -f "$DATA/cache.dat" ] || fail "info saved no cache.dat"
run cache dump
grep -q $'^untagged_song\t\t\t' <<<"$OUT" || fail "the cache does not store an empty title as the file name"
grep -q $'^Check=1\r$' "$DATA/jukarra2.ini" 2>/dev/null || fail "info wrote no settings file"

# --- the counters run across runs; the second run hits the cache ---
run cache stats
expect_rc 0 "cache stats"
expect_line "Hit attempts: 2" "first stats"
expect_line "Hits: 0" "first stats"
expect_line "Misses: 2" "first stats"
expect_line "Success rate: 0.00%" "first stats"
expect_line "Cache size: 2 / Infinity" "first stats"
run info --json "$PLAIN"
expect_rc 0 "info --json from the cache"
[ "$(json_field "$OUT" Bitrate)" = "  64" ] || fail "a cached song's Bitrate is not padded to 4"
[ -n "$(json_field "$OUT" LastUsed)" ] || fail "a cached song has no LastUsed"
run cache stats
expect_line "Hit attempts: 3" "second stats"
expect_line "Hits: 1" "second stats"
expect_line "Success rate: 33.33%" "second stats"

# --- JSON lines carry the record's field names; Reserved and Track are numbers ---
run info --no-cache --json "$UNTAGGED" "$PLAIN"
expect_rc 0 "info --json"
[ "$(wc -l <<<"$OUT")" -eq 2 ] || fail "info --json: not one line per song"
python3 -c '
import json, sys
names = ["Title", "Artist", "Album", "Comment", "Genre", "Year", "Bitrate", "Date", "Size",
         "Time", "Path", "Volume", "LastUsed", "Reserved", "Track"]
for line in sys.stdin:
    record = json.loads(line)
    assert list(record) == names, list(record)
    assert all(isinstance(record[n], str) for n in names[:13]), record
    assert isinstance(record["Reserved"], int) and isinstance(record["Track"], int), record
' <"$WORK/out" || fail "info --json: field names or kinds are wrong"

# --- a relative path becomes the full path ---
(cd "$MUSIC" && "$CLI" --data-dir "$DATA" info --json Plain.mp3) >"$WORK/out" 2>"$WORK/err"
[ "$(json_field "$(cat "$WORK/out")" Path)" = "$PLAIN" ] || fail "a relative path is not made full"

# --- a missing file is reported; the others are printed; exit 2 at the end ---
# With --json every FILE has its line, in order: the missing one the failure record.
run info --json "$PLAIN" "$MUSIC/missing.mp3" "$UNTAGGED"
expect_rc 2 "info with a missing file"
[ "$(wc -l <<<"$OUT")" -eq 3 ] || fail "info with a missing file: not one line for each file: $OUT"
[ "$(json_field "$(sed -n 1p <<<"$OUT")" Path)" = "$PLAIN" ] || fail "info --json: line 1 is not the first file"
[ "$(json_field "$(sed -n 3p <<<"$OUT")" Path)" = "$UNTAGGED" ] || fail "info --json: line 3 is not the third file"
python3 -c '
import json, sys
record = json.loads(sys.argv[1])
assert record["Title"] == "File non-existant" and record["Path"] == "File non-existant", record
assert all(record[k] == "" for k in ("Artist", "Album", "Comment", "Genre", "Year", "Bitrate",
                                     "Date", "Size", "Time", "Volume", "LastUsed")), record
assert record["Reserved"] == 0 and record["Track"] == 0, record
' "$(sed -n 2p <<<"$OUT")" || fail "info --json: line 2 is not the failure record: $OUT"
expect_one_error_line "info with a missing file"
grep -qF "$MUSIC/missing.mp3: File non-existant" <<<"$ERR" || fail "the missing file is not named: $ERR"
run info --json "$MUSIC/missing.mp3"
expect_rc 2 "info --json of a missing file alone"
[ "$(json_field "$OUT" Title)" = "File non-existant" ] || fail "info --json of a missing file: '$OUT'"
run info "$PLAIN" "$MUSIC/missing.mp3"
[ "$(grep -c '^Path:' <<<"$OUT")" -eq 1 ] || fail "info without --json printed a block for the missing file"
head -c 131 "$PLAIN" >"$MUSIC/short.mp3"
run info "$MUSIC/short.mp3"
expect_rc 2 "info of a 131-byte file"

# --- tag set: the fields given change, the " - NN" suffix is not written back ---
run tag set --title "New Title" --year 2020 "$PLAIN"
expect_rc 0 "tag set"
backdate "$PLAIN"
[ -z "$OUT$ERR" ] || fail "tag set printed '$OUT$ERR'"
run info --json "$PLAIN"
[ "$(json_field "$OUT" Title)" = "New Title" ] || fail "tag set: the title was not written"
[ "$(json_field "$OUT" Year)" = "2020" ] || fail "tag set: the year was not written"
[ "$(json_field "$OUT" Artist)" = "Plain Artist" ] || fail "tag set: the artist changed"
[ "$(json_field "$OUT" Album)" = "Plain Album - 04" ] || fail "tag set: the album suffix was doubled"
[ "$(json_field "$OUT" Track)" = "4" ] || fail "tag set: the track changed"
[ "$(tail -c 128 "$PLAIN" | head -c 3)" = "TAG" ] || fail "tag set: no ID3v1 tag at the end"
[ "$(tail -c 128 "$PLAIN" | cut -b 64-93)" = "Plain Album                   " ] ||
    fail "tag set: the album field of the tag is not the plain album"
[ "$(stat -c %s "$PLAIN")" -eq 4544 ] || fail "tag set: an ID3v1 tag was not written in place"

run tag set --track 7 --comment "a comment" "$PLAIN"
backdate "$PLAIN"
run info --json "$PLAIN"
[ "$(json_field "$OUT" Album)" = "Plain Album - 07" ] || fail "tag set --track: album $(json_field "$OUT" Album)"
[ "$(json_field "$OUT" Comment)" = "a comment" ] || fail "tag set --comment"

LONG="A title much longer than thirty characters"
run tag set --title "$LONG" "$UNTAGGED"
expect_rc 0 "tag set of a long title"
backdate "$UNTAGGED"
run info --json "$UNTAGGED"
[ "$(json_field "$OUT" Title)" = "$LONG" ] || fail "a long title did not go through Lyrics3"
tail -c 137 "$UNTAGGED" | head -c 9 | grep -q LYRICS200 || fail "a long title wrote no Lyrics3 block"

# --- tag strip ---
run tag strip "$UNTAGGED"
expect_rc 0 "tag strip"
backdate "$UNTAGGED"
[ "$(stat -c %s "$UNTAGGED")" -eq 6480 ] || fail "tag strip left $(stat -c %s "$UNTAGGED") bytes"
run info --json "$UNTAGGED"
[ "$(json_field "$OUT" Title)" = "" ] || fail "tag strip: the title is still there"
run tag strip "$UNTAGGED"
expect_rc 2 "tag strip of an untagged file"
expect_one_error_line "tag strip of an untagged file"
run tag set --title X "$MUSIC/missing.mp3"
expect_rc 2 "tag set of a missing file"
expect_one_error_line "tag set of a missing file"

# --- a tag the writer refuses: the reason, not a guess at permissions ---
cp "$SONGS/cbr64-id3v1.mp3" "$MUSIC/refused.mp3"
before=$(checksum "$MUSIC/refused.mp3")
run tag set --title "$(head -c 40000 /dev/zero | tr '\0' t)" "$MUSIC/refused.mp3"
expect_rc 2 "tag set of a title over a Lyrics3 field"
expect_one_error_line "tag set of a title over a Lyrics3 field"
grep -qF "The tag for $MUSIC/refused.mp3 could not be written successfully.  Its title would take 40000 bytes in the Lyrics3 block, and a field there holds at most 32767." <<<"$ERR" ||
    fail "tag set of a too long title: '$ERR'"
grep -q "permission" <<<"$ERR" && fail "tag set of a too long title blames permissions: '$ERR'"
[ "$(checksum "$MUSIC/refused.mp3")" = "$before" ] || fail "a refused tag changed the file"
# The end mark of a Lyrics3 block at its place, but no block ahead of it and no tag behind it.
python3 -c '
import sys
audio = open(sys.argv[1], "rb").read()[:-128]
open(sys.argv[2], "wb").write(audio + b"LYRICS200" + b"x" * 128)
' "$SONGS/cbr64-id3v1.mp3" "$MUSIC/endmark.mp3"
run tag strip "$MUSIC/endmark.mp3"
expect_rc 2 "tag strip of an end mark without a block"
expect_one_error_line "tag strip of an end mark without a block"
grep -qF "$MUSIC/endmark.mp3: It has a Lyrics3 end mark, but no block ahead of it and no ID3v1 tag behind it, so there is no tag to take off." <<<"$ERR" ||
    fail "tag strip of an end mark without a block: '$ERR'"
grep -q "permission" <<<"$ERR" && fail "tag strip of an end mark blames permissions: '$ERR'"

# --- cache dump: every record in its stored form ---
run cache dump
expect_rc 0 "cache dump"
head -n 1 <<<"$OUT" | grep -q $'^Title\tArtist\tAlbum\tYear\tGenre\tTime\tBitrate\tPath\t' ||
    fail "cache dump: no header line"
grep -q $'\tplain.mp3\t' <<<"$OUT" || fail "cache dump: the key is not the lower-cased bare name"
grep -qE $'\t[0-9]{14}\t[0-9]{14}\t[0-9]+$' <<<"$OUT" || fail "cache dump: Date and LastUsed are not stamps"
RECORDS=$(($(wc -l <<<"$OUT") - 1))
run cache dump --json
[ "$(wc -l <<<"$OUT")" -eq "$RECORDS" ] || fail "cache dump --json: not one line per record"
[ "$(json_field "$(head -n 1 <<<"$OUT")" Time)" = "0001" ] || fail "cache dump --json: Time is not MMSS"

# --- cache optimize, trim, reset, flush ---
run cache optimize
expect_rc 0 "cache optimize"
[[ "$OUT" =~ ^Removed\ [0-9]+\ of\ [0-9]+\ records?\.$ ]] || fail "cache optimize printed '$OUT'"
run --set MaxCache=0 cache stats
expect_line "Cache size: None" "stats without a cache size"
run --set MaxCache=1 cache trim
expect_rc 0 "cache trim"
run --set MaxCache=0 cache trim
expect_line "Kept 0 of 2 records." "cache trim to none"
run cache reset
expect_rc 0 "cache reset"
run cache stats
expect_line "Hit attempts: 0" "after reset"
expect_line "Cache size: 0 / Infinity" "after trimming to none"
run info "$PLAIN"
run cache flush
expect_rc 0 "cache flush"
expect_line "Flushed 1 record." "cache flush"
run cache dump
[ "$(wc -l <<<"$OUT")" -eq 1 ] || fail "cache dump after a flush: $OUT"
[ "$(stat -c %s "$DATA/cache.dat")" -eq 20 ] || fail "a flushed cache.dat is not a bare header"

# --- TagCodepage: --set flushes for the run and saves no cache ---
run tag set --title "Café" "$PLAIN"
backdate "$PLAIN"
[ "$(tail -c 125 "$PLAIN" | head -c 5 | od -An -tx1 | tr -d ' ')" = "436166e920" ] ||
    fail "the title was not written in windows-1252"
run info --json "$PLAIN"
[ "$(json_field "$OUT" Title)" = "Café" ] || fail "windows-1252 title read as $(json_field "$OUT" Title)"
BEFORE=$(checksum "$DATA/cache.dat")
run --set TagCodepage=KOI8-R info --json "$PLAIN"
expect_rc 0 "info in KOI8-R"
[ "$(json_field "$OUT" Title)" = "CafИ" ] || fail "KOI8-R title read as $(json_field "$OUT" Title)"
[ "$(checksum "$DATA/cache.dat")" = "$BEFORE" ] || fail "--set TagCodepage saved the cache"
grep -q $'^TagCodepage=windows-1252\r$' "$DATA/jukarra2.ini" || fail "--set TagCodepage was saved"
run --set TagCodepage=KOI8-R cache dump
[ "$(wc -l <<<"$OUT")" -eq 1 ] || fail "--set TagCodepage did not empty the cache for the run"
run cache dump
grep -q $'^Café\t' <<<"$OUT" || fail "the cache lost its windows-1252 record"

# --- silent ---
run silent --size 0 "$MUSIC/silence.mp3"
expect_rc 0 "silent --size 0"
[ "$(stat -c %s "$MUSIC/silence.mp3")" -eq 546 ] || fail "silent --size 0 is not one frame and a tag"
[ "$(head -c 4 "$MUSIC/silence.mp3" | od -An -tx1 | tr -d ' ')" = "fffb9044" ] ||
    fail "silent: the frame header is wrong"
run info --json "$MUSIC/silence.mp3"
[ "$(json_field "$OUT" Title)" = "Sound of Silence" ] || fail "silent: the wizard's tag is missing"
[ "$(json_field "$OUT" Artist)" = "Marlow & Thane" ] || fail "silent: the wizard's artist is missing"
run silent "$MUSIC/default.mp3"
expect_rc 0 "silent with the default size"
SIZE=$(stat -c %s "$MUSIC/default.mp3")
[ "$SIZE" -ge $((5000 * 1024 + 128)) ] && [ "$SIZE" -lt $((5000 * 1024 + 128 + 13376)) ] ||
    fail "silent: the default size gave $SIZE bytes"
run silent --size 1 "$MUSIC/no-such-folder/a.mp3"
expect_rc 2 "silent into a missing folder"
expect_one_error_line "silent into a missing folder"

# --- while the desktop program holds the data folder ---
hold_data_folder "$DATA"
CACHE_BEFORE=$(checksum "$DATA/cache.dat")
INI_BEFORE=$(checksum "$DATA/jukarra2.ini")
run info --json "$PLAIN" "$UNTAGGED"
expect_rc 0 "info while the desktop program runs"
[ "$(wc -l <<<"$OUT")" -eq 2 ] || fail "info while the desktop program runs printed no songs"
expect_one_error_line "info while the desktop program runs"
grep -q "not saved" <<<"$ERR" || fail "info while the desktop program runs does not say so: $ERR"
[ "$(checksum "$DATA/cache.dat")" = "$CACHE_BEFORE" ] || fail "info saved the cache under the desktop program"
[ "$(checksum "$DATA/jukarra2.ini")" = "$INI_BEFORE" ] || fail "info saved the settings under the desktop program"
PLAIN_BEFORE=$(checksum "$PLAIN")
for args in "tag set --title X $PLAIN" "tag strip $PLAIN" "cache flush" "cache optimize" \
    "cache trim" "cache reset"; do
    # shellcheck disable=SC2086
    run $args
    expect_rc 2 "'$args' while the desktop program runs"
    expect_one_error_line "'$args' while the desktop program runs"
done
[ "$(checksum "$PLAIN")" = "$PLAIN_BEFORE" ] || fail "a tag was written under the desktop program"
run cache stats
expect_rc 0 "cache stats while the desktop program runs"
release_data_folder

# --- a new tag code page empties the cache: its texts were decoded in the old one ---
run info "$PLAIN"
expect_rc 0 "info before a code page change"
[ "$(stat -c %s "$DATA/cache.dat")" -gt 20 ] || fail "info left no song in cache.dat"
run settings set Options.TagCodepage KOI8-R
expect_rc 0 "settings set TagCodepage"
[ "$(stat -c %s "$DATA/cache.dat")" -eq 20 ] || fail "a new tag code page left songs in cache.dat"

# --- bad usage ---
for args in "info" "info --bogus $PLAIN" "info --json=1 $PLAIN" "tag" "tag frob $PLAIN" \
    "tag set $PLAIN" "tag set --title" "tag set --title X" "tag set --track 256 $PLAIN" \
    "tag set --track x $PLAIN" "tag strip" "tag strip --all $PLAIN" "silent" \
    "silent a.mp3 b.mp3" "silent --size -1 a.mp3" "silent --size abc a.mp3" "silent --size" \
    "cache" "cache frob" "cache dump --xml" "cache stats extra" "cache flush --json"; do
    # shellcheck disable=SC2086
    run $args
    expect_rc 1 "bad usage '$args'"
    expect_one_error_line "bad usage '$args'"
    [ -z "$OUT" ] || fail "bad usage '$args': unexpected output '$OUT'"
done

finish "song command"
