# What the end-to-end tests of jukarra-cli share; sourced by each tests/cli/test_*.sh after it
# has set CLI. It makes WORK (removed at the end) with a HOME of its own, so the user's own
# settings and environment stay out of every run.

WORK=$(mktemp -d)
HOLDER=""
cleanup() {
    [ -n "$HOLDER" ] && kill "$HOLDER" 2>/dev/null
    rm -rf "$WORK"
}
trap cleanup EXIT
export HOME="$WORK/home"
unset JUKARRA_HOME XDG_DATA_HOME
mkdir -p "$HOME"

FAILURES=0
fail() {
    echo "FAIL: $*" >&2
    FAILURES=$((FAILURES + 1))
}

# capture COMMAND...: runs a command, leaving OUT, ERR and RC.
capture() {
    "$@" >"$WORK/out" 2>"$WORK/err"
    RC=$?
    OUT=$(cat "$WORK/out")
    ERR=$(cat "$WORK/err")
}

expect_rc() {  # expect_rc WANTED WHAT
    [ "$RC" -eq "$1" ] || fail "$2: exit $RC, wanted $1 (stderr: $ERR)"
}

expect_line() {  # expect_line LINE WHAT: OUT holds LINE exactly
    grep -qxF -- "$1" <<<"$OUT" || fail "$2: no line '$1' in: $OUT"
}

expect_one_error_line() {  # expect_one_error_line WHAT
    [ "$(wc -l <"$WORK/err")" -eq 1 ] || fail "$1: stderr is not one line: '$ERR'"
    [[ "$ERR" == jukarra-cli:* ]] || fail "$1: stderr does not name the tool: '$ERR'"
}

checksum() { md5sum "$@" | cut -d' ' -f1; }

# hold_data_folder DATA: a stand-in for a running desktop program holds the lock of DATA
# until release_data_folder.
hold_data_folder() {
    sleep 30 &
    HOLDER=$!
    sleep 0.2
    printf '%s\nsleep\n%s\n' "$HOLDER" "$(hostname)" >"$1/jukarra.lock"
}

release_data_folder() {
    kill "$HOLDER"
    wait "$HOLDER" 2>/dev/null
    HOLDER=""
}

# finish WHAT: the exit status and closing line of a test script.
finish() {
    if [ "$FAILURES" -ne 0 ]; then
        echo "$FAILURES failure(s)" >&2
        exit 1
    fi
    echo "all $1 tests passed"
}
