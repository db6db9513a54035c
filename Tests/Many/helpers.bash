# What the tests of MSPDIImport-many share; sourced with their arguments: build folder, scratch folder.
build=$(realpath "$1")
scratch=$(realpath -m "$2")
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
parallel --version 2>/dev/null | grep GNU >/dev/null || { echo "skipped: GNU parallel is not installed"; exit 77; }
export PATH="$build:$PATH"
# Neither a check without a log-in nor the account of a service has a shell that GNU parallel could use.
export SHELL=/bin/false
many=$root/tools/MSPDIImport-many
template=$root/share/kadenza2/Empty.kdzx
rm -rf "$scratch"
mkdir -p "$scratch"
cd "$scratch"

fail() { echo "$*" >&2; exit 1; }

# wait_for <what> <command that becomes true>...: fails after half a minute.
wait_for() {
    local what=$1 tries=0
    shift
    until "$@"; do
        ((tries += 1))
        [ "$tries" -lt 600 ] || fail "waited in vain: $what"
        sleep 0.05
    done
}

# check_bundles <folder> <count> [<jobs>]: so many bundles, each complete, and each reported once under a name of its own.
# Where GNU parallel itself was killed, the logs of so many jobs may be lost that it was about to pass on.
check_bundles() {
    local found reported
    found=$(find "$1" -maxdepth 1 -name '*.kdzx' | wc -l)
    [ "$found" -eq "$2" ] || fail "$found bundles in $1 instead of $2"
    for bundle in "$1"/*.kdzx; do
        [ -s "$bundle/Actual.xml" ] || fail "$bundle has no scenario"
        # The template's table of contents names no scenario of ours: both documents are of one finished import.
        id=$(sed -n 's/.*<scenario .*\bid="\([^"]*\)".*/\1/p' "$bundle/Actual.xml" | head -n 1)
        if [ -z "$id" ] || ! grep -q "$id" "$bundle/__TOC.xml"; then fail "$bundle is not complete"; fi
    done
    reported=$(cut -f 3 "$1/import.names" | sort -u | wc -l)
    [ "$reported" -eq "$2" ] || fail "$reported names in $1/import.names instead of $2"
    cut -f 3 "$1/import.names" | while IFS= read -r bundle; do [ -d "$bundle" ] || fail "$bundle is named but not there"; done
    reported=$(sed -n "s/^MSPDIImport-many: '.*' is '\(.*\)'$/\1/p" "$1/import.log" | sort | uniq | wc -l)
    if [ "$reported" -gt "$2" ] || [ "$reported" -lt $(($2 - ${3:-0})) ]; then
        fail "$reported names reported in $1/import.log instead of $2"
    fi
}
