# Sourced by the scripts that run two builds' jukarra-cli side by side on one collection:
#   two_builds SCRIPT "$@"   sets old, new, collection and rounds (3 by default) from
# OLD_BUILD NEW_BUILD COLLECTION [ROUNDS], prints the script's header as its usage when fewer
# are given, and stops when a build has no jukarra-cli.
two_builds() {
    local script=$1
    shift
    if [ $# -lt 3 ]; then
        sed -n '2,11p' "$script" | sed 's/^# \{0,1\}//'
        exit 1
    fi
    old=$1
    new=$2
    collection=$3
    rounds=${4:-3}
    local build
    for build in "$old" "$new"; do
        if [ ! -x "$build/jukarra-cli" ]; then
            echo "$(basename "$script"): $build/jukarra-cli is missing" >&2
            exit 1
        fi
    done
}
