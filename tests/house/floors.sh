#!/usr/bin/env bash
# Fails when a folder includes from one that does not lie below it. usage: floors.sh SOURCE_FOLDER
set -euo pipefail
cd "$1"

declare -A below=(
    [platform]="platform"
    [mxf]="platform mxf"
    [timecode]="platform timecode"
    [fcp]="platform fcp"
    [xml]="platform timecode xml"
    [media]="platform timecode xml mxf media"
    [project]="platform timecode xml media project"
    [cli]="platform timecode xml media project mxf fcp cli"
)
failures=0
checked=0
for folder in "${!below[@]}"; do
    while IFS=: read -r file line include; do
        [ -n "$file" ] || continue
        path=$(sed -E 's/.*"([^"]+)".*/\1/' <<<"$include")
        # A header includes relative to itself, a source file from the root.
        case "$path" in
        ../* | ./*) target=$(realpath --relative-to=. -m "$(dirname "$file")/$path") ;;
        *) if [ -e "$path" ]; then target=$path; else target=$(realpath --relative-to=. -m "$(dirname "$file")/$path"); fi ;;
        esac
        checked=$((checked + 1))
        top=${target%%/*}
        if [[ " ${below[$folder]} " != *" $top "* ]]; then
            echo "$file:$line: $folder/ may not include $target"
            failures=$((failures + 1))
        fi
    done < <(grep -rnE '^#include "' "$folder" --include='*.h' --include='*.cpp' 2>/dev/null)
done
echo "$checked includes checked, $failures wrong"
[ "$checked" -gt 0 ] && [ "$failures" -eq 0 ]
