#!/usr/bin/env bash
# Runs clang-tidy, with the compiler's lock analysis, over the sources of the library, the simulator and the
# bench; any finding fails. A file that was clean with the same headers, checks and linter is not looked at
# again: what was clean stands in tools/lint-clean.txt, which --record writes anew.
set -euo pipefail
cd "$(dirname "$0")/.."
export known=tools/lint-clean.txt
found=$(mktemp)
export found
finish() {
    if [[ "$record" == "--record" ]]; then
        sort -u "$found" >"$known"
    fi
    rm -f "$found"
}
record=${1:-}
trap finish EXIT
version=$(clang-tidy --version | grep -o 'version [0-9.]*')
export version

lint_one() {
    local flags=(-std=c++20 -Isrc -Wall -Wextra -Wthread-safety)
    local key
    key=$({ echo "$version"; cat .clang-tidy; clang++ -E -P "${flags[@]}" "$1"; } 2>/dev/null | sha256sum | cut -c1-24)
    if ! grep -qsx "$key" "$known"; then
        clang-tidy --quiet --warnings-as-errors='*' "$1" -- "${flags[@]}" 2>/dev/null || return 1
    fi
    echo "$key" >>"$found"
}
export -f lint_one

find src -name '*.cpp' -print0 | xargs -0 -n 1 -P "$(nproc)" bash -c 'lint_one "$1" || exit 255' lint
echo "lint: clean"
