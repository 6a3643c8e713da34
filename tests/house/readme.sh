#!/usr/bin/env bash
# Runs every "$ command" of the console blocks in a document and compares what it prints (both outputs) with what the
# document shows. usage: readme.sh SOURCE_FOLDER BINARY_FOLDER DOCUMENT
set -euo pipefail
source_folder=$1
export PATH=$2:$PATH
document=$3

place=$(mktemp -d)
trap 'rm -rf "$place"' EXIT
cp -r "$source_folder/samples" "$place/"
cd "$place"

commands=0
failures=0
command=""
expected=""

check() {
    [ -n "$command" ] || return 0
    commands=$((commands + 1))
    local shown
    shown=$(bash -c "$command" 2>&1) || true
    if [ "$shown" != "${expected%$'\n'}" ]; then
        failures=$((failures + 1))
        echo "\$ $command"
        diff <(printf '%s\n' "${expected%$'\n'}") <(printf '%s\n' "$shown") || true
    fi
    command=""
    expected=""
}

in_block=no
while IFS= read -r line; do
    if [ "$in_block" = no ]; then
        [ "$line" = '```console' ] && in_block=yes
    elif [ "$line" = '```' ]; then
        check
        in_block=no
    elif [[ "$line" == '$ '* ]]; then
        check
        command=${line#\$ }
    else
        expected+=$line$'\n'
    fi
done <"$document"

echo "$commands commands checked, $failures differ"
[ "$commands" -gt 0 ] && [ "$failures" -eq 0 ]
