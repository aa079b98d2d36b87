#!/usr/bin/env bash
# Runs clang-tidy over the sources of the library, the simulator and the bench; any finding fails. A file that
# was clean before, with the same headers and the same checks, is not looked at again.
set -euo pipefail
cd "$(dirname "$0")/.."
export cache=${XDG_CACHE_HOME:-$HOME/.cache}/kalvio-lint
mkdir -p "$cache"

lint_one() {
    local flags=(-std=c++20 -Isrc -Wall -Wextra)
    local key
    key=$({ cat .clang-tidy; clang++ -E -P "${flags[@]}" "$1"; } 2>/dev/null | sha256sum | cut -d' ' -f1)
    [[ -e "$cache/$key" ]] && return 0
    clang-tidy --quiet --warnings-as-errors='*' "$1" -- "${flags[@]}" 2>/dev/null && touch "$cache/$key"
}
export -f lint_one

# Which lock guards what, in the files that say so.
check_locks() {
    clang++ -fsyntax-only -x c++ -std=c++20 -Isrc -DKALVIO_STATIC -Wno-pragma-once-outside-header \
        -Wthread-safety -Werror=thread-safety "$1"
}
export -f check_locks
grep -rlZE 'LockGuard|KALVIO_(GUARDED_BY|REQUIRES)' src --include='*.h' --include='*.cpp' |
    xargs -0 -n 1 -P "$(nproc)" bash -c 'check_locks "$1" || exit 255' locks

find src -name '*.cpp' -print0 | xargs -0 -n 1 -P "$(nproc)" bash -c 'lint_one "$1" || exit 255' lint
echo "lint: clean"
