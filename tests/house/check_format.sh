#!/bin/sh
# Names the source files that clang-format would change. Usage: check_format.sh CLANG_FORMAT ROOT
set -eu
cd "$2"
export FORMATTER="$1"
wrong=$(find tsRtm cli examples tests bench fuzz -name '*.[ch]pp' -print0 | sort -z |
    xargs -0 -r -P "$(nproc)" -n 8 sh -c '
        for file; do "$FORMATTER" --dry-run -Werror "$file" >/dev/null 2>&1 || echo "$file"; done' sh)
[ -z "$wrong" ] || { echo "$wrong"; echo "Not as $1 has it; $1 -i FILE puts it right."; exit 1; }
