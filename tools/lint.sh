#!/usr/bin/env bash
# Runs clang-tidy over the sources of the library, the simulator and the bench; any finding fails.
set -euo pipefail
cd "$(dirname "$0")/.."
find src -name '*.cpp' -print0 |
    xargs -0 -n 1 -P "$(nproc)" sh -c \
        'clang-tidy --quiet --warnings-as-errors="*" "$1" -- -std=c++20 -Isrc -Wall -Wextra 2>/dev/null' lint
echo "lint: clean"
