#!/usr/bin/env bash
# Checks that every source file is formatted; with --fix, formats it.
set -euo pipefail
cd "$(dirname "$0")/.."
mapfile -t files < <(git ls-files --cached --others --exclude-standard '*.h' '*.cpp')
if [[ "${1:-}" == "--fix" ]]; then
    clang-format -i "${files[@]}"
else
    clang-format --dry-run --Werror "${files[@]}"
    echo "format: ${#files[@]} files are formatted"
fi
