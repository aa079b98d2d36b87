#!/usr/bin/env bash
# Checks that every source file is formatted, braces included; with --fix, formats it. One version of the
# formatter, since each lays out code a little differently; CLANG_FORMAT names another program.
set -euo pipefail
cd "$(dirname "$0")/.."
formatter=${CLANG_FORMAT:-clang-format-16}
mapfile -t files < <(git ls-files --cached --others --exclude-standard '*.h' '*.cpp')
if [[ "${1:-}" == "--fix" ]]; then
    "$formatter" -i "${files[@]}"
else
    "$formatter" --dry-run --Werror "${files[@]}"
    echo "format: ${#files[@]} files are formatted"
fi
