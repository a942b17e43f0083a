#!/usr/bin/env bash
# End-to-end tests of "jukarra-cli vdrive", "bookmark" and "eject" on fresh data folders.
# Usage: test_vdrive.sh PATH_TO_JUKARRA_CLI
set -u

CLI=${1:?usage: test_vdrive.sh PATH_TO_JUKARRA_CLI}
# shellcheck source=cli_test_support.sh
. "$(dirname "$0")/cli_test_support.sh"
SONGS="$(cd "$(dirname "$0")/../data/songs" && pwd)"

DATA="$WORK/data"
mkdir -p "$DATA" "$WORK/disc/rock/live" "$WORK/disc/.Trash-1000" "$WORK/disc/Temporary Internet Files"
cp "$SONGS"/cbr64-id3v1.mp3 "$WORK/disc/rock/a.mp3"
cp "$SONGS"/vbr-xing.mp3 "$WORK/disc/rock/live/b.mp3"
cp "$SONGS"/mono22-id3v1.mp3 "$WORK/disc/.Trash-1000/gone.mp3"
cp "$SONGS"/mono22-id3v1.mp3 "$WORK/disc/Temporary Internet Files/c.mp3"
cp "$SONGS"/mono22-id3v1.mp3 "$WORK/disc/recycled.mp3"
V() { capture "$CLI" --data-dir "$DATA" "$@"; }
VP="Rock$WORK/disc"

# --- create: trash and temporary internet folders are left out, "recycle" is not ---
V vdrive create --name Rock "$WORK/disc"
expect_rc 0 "create"
expect_line "Rock: 3 songs" "create"
[ -f "$DATA/master.dat" ] || fail "create: no master.dat"
[ "$(head -c 10 "$DATA/master.dat")" = "VBASE 1.01" ] || fail "create: master.dat is not VBASE 1.01"

V vdrive create --name rock "$WORK/disc"
expect_rc 2 "create a taken name"
grep -qF "already exists" <<<"$ERR" || fail "create a taken name: '$ERR'"
V vdrive create --name 1999 "$WORK/disc"
expect_rc 2 "create an all-digit name"
V vdrive create "$WORK/nowhere"
expect_rc 2 "create from a missing folder"

# --- list, summary, ls ---
V vdrive list --json
expect_rc 0 "list --json"
grep -qF '"Name":"Rock","Songs":3' <<<"$OUT" || fail "list --json: $OUT"
V vdrive summary
expect_line "Total drives: 1" "summary"
expect_line "Total songs: 3" "summary"
V vdrive ls "$VP/rock"
expect_rc 0 "ls"
[ "$(wc -l <<<"$OUT")" -eq 2 ] || fail "ls: wanted a header and one row: $OUT"
V vdrive ls --recurse --json "$VP/rock"
[ "$(wc -l <<<"$OUT")" -eq 2 ] || fail "ls --recurse --json: $OUT"
V vdrive ls --all
[ "$(wc -l <<<"$OUT")" -eq 4 ] || fail "ls --all: $OUT"
V vdrive ls Nope
expect_rc 2 "ls of an unknown volume"

# --- where ---
V vdrive where "$WORK/disc/rock/a.mp3" /elsewhere.mp3
grep -qF "$WORK/disc/rock/a.mp3	Rock	" <<<"$OUT" || fail "where: $OUT"
grep -qF "/elsewhere.mp3		not catalogued" <<<"$OUT" || fail "where: $OUT"

# --- export and import: a taken name gets (2) ---
V vdrive export "$WORK/rock.jvd" Rock
expect_rc 0 "export"
[ "$(head -c 10 "$WORK/rock.jvd")" = "VBASE 1.00" ] || fail "export: not VBASE 1.00"
V vdrive import "$WORK/rock.jvd"
expect_rc 0 "import"
expect_line "Rock (2)" "import"

# --- rename, remove; backups move on once per run ---
before=$(checksum "$DATA/master.dat")
V vdrive rename "Rock (2)" "a/b"
expect_rc 2 "rename to an illegal name"
grep -qF "Sorry, a/b contains illegal characters." <<<"$ERR" || fail "rename refused: '$ERR'"
[ "$(checksum "$DATA/master.dat")" = "$before" ] || fail "a refused rename changed master.dat"
V vdrive rename "Rock (2)" Copy
expect_rc 0 "rename"
[ "$(checksum "$DATA/master.da2")" = "$before" ] || fail "rename: master.da2 is not the run before"
V vdrive remove Copy Nope
expect_rc 2 "remove an unknown volume"
V vdrive remove Copy
expect_rc 0 "remove"
V vdrive list
[ "$(wc -l <<<"$OUT")" -eq 2 ] || fail "remove: $OUT"

# --- every changing command saves when it ends, with SafeCatalogue on and off; each is a run
# of its own, so master.da2 is always the catalogue of the run before, master.da3 of the one
# before that ---
for safe in 1 0; do
    GEN="$WORK/generations$safe"
    mkdir -p "$GEN"
    older=""
    run_and_check_generations() {
        local before=none
        [ -f "$GEN/master.dat" ] && before=$(checksum "$GEN/master.dat")
        capture "$CLI" --data-dir "$GEN" --set "SafeCatalogue=$safe" "$@"
        local what="$2 with SafeCatalogue=$safe"
        expect_rc 0 "$what"
        [ -f "$GEN/master.dat" ] && [ "$(checksum "$GEN/master.dat")" != "$before" ] ||
            fail "$what: master.dat was not saved when the command ended"
        if [ "$before" != none ]; then
            [ "$(checksum "$GEN/master.da2")" = "$before" ] || fail "$what: master.da2 is not the run before"
        fi
        if [ -n "$older" ]; then
            [ "$(checksum "$GEN/master.da3")" = "$older" ] || fail "$what: master.da3 is not the run before that"
        fi
        [ "$before" != none ] && older=$before
        ls -A "$GEN" | grep -q '\.saving$\|\.tmp-' && fail "$what: a temporary file was left"
    }
    run_and_check_generations vdrive create --name Gen "$WORK/disc"
    run_and_check_generations vdrive import "$WORK/rock.jvd"
    run_and_check_generations vdrive rename Rock Renamed
    run_and_check_generations vdrive update Renamed "$WORK/disc/rock"
    run_and_check_generations vdrive remove Gen
    capture "$CLI" --data-dir "$GEN" vdrive list
    [ "$(cut -f1,2 <<<"$OUT" | tail -n +2)" = "$(printf 'Renamed\t2')" ] ||
        fail "generations with SafeCatalogue=$safe: $OUT"
done

# --- update: a path with no songs keeps the volume and says so ---
mkdir -p "$WORK/empty"
V vdrive update Rock "$WORK/empty"
expect_rc 2 "update from an empty folder"
grep -qF "No songs were found in $WORK/empty.  The volume Rock was left as it was." <<<"$ERR" ||
    fail "update from an empty folder: '$ERR'"
V vdrive summary
expect_line "Total songs: 3" "update kept the volume"
V vdrive update Rock "$WORK/disc/rock"
expect_rc 0 "update"
expect_line "Rock: 2 songs" "update"

# --- restore: the current file kept beside ---
V vdrive restore da2
expect_rc 0 "restore"
[ -f "$DATA/master.dat.replaced" ] || fail "restore: the current file was not kept"
V vdrive restore da9
expect_rc 1 "restore of no backup"

# --- a damaged master.dat: nothing changes until it is restored ---
cp "$DATA/master.dat" "$WORK/good"
head -c 40 "$WORK/good" >"$DATA/master.dat"
V vdrive rename Rock Other
expect_rc 2 "rename on a damaged catalogue"
[ "$(head -c 40 "$WORK/good" | md5sum)" = "$(md5sum <"$DATA/master.dat")" ] || fail "damaged master.dat was changed"
cp "$WORK/good" "$DATA/master.dat"

# --- bookmarks ---
V bookmark list
expect_rc 0 "bookmark list on none"
[ -z "$OUT" ] || fail "bookmark list on none: $OUT"
V bookmark add " Music " "$WORK/disc"
expect_rc 0 "bookmark add"
V bookmark add Virtual "$VP/rock"
V bookmark list
expect_line "1	Music	$WORK/disc" "bookmark list"
V bookmark list --json
expect_line "{\"N\":2,\"Name\":\"Virtual\",\"Location\":\"$VP/rock\"}" "bookmark list --json"
V bookmark remove 3
expect_rc 2 "bookmark remove out of range"
V bookmark remove 1
V bookmark list
[ "$(wc -l <<<"$OUT")" -eq 1 ] || fail "bookmark remove: $OUT"

# --- changing commands refuse while the desktop program runs ---
hold_data_folder "$DATA"
V vdrive rename Rock Held
expect_rc 2 "rename while held"
expect_one_error_line "rename while held"
V bookmark add X /
expect_rc 2 "bookmark add while held"
release_data_folder

# --- usage ---
V vdrive
expect_rc 1 "vdrive alone"
V vdrive frobnicate
expect_rc 1 "unknown sub-command"
V eject
expect_rc 1 "eject without a path"

finish vdrive
