#!/usr/bin/env bash
# Installs the Debian packages that the build and the tests need and that are missing; with --checks those of
# the checks and sanitizers too, with --fuzz those of `make fuzz`.
set -euo pipefail

packages=(g++ cmake ninja-build make python3 libgtest-dev libgmock-dev libbenchmark-dev
    libcli11-dev nlohmann-json3-dev libedit-dev python3-jsonschema)
optional=(ccache)
if [[ "${1:-}" == "--checks" ]]; then
    packages+=(clang clang-format-16 clang-tidy libclang-rt-dev)
elif [[ "${1:-}" == "--fuzz" ]]; then
    packages+=(clang libclang-rt-dev llvm)
fi

missing=()
for package in "${packages[@]}" "${optional[@]}"; do
    dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null | grep -qx installed || missing+=("$package")
done
if [[ ${#missing[@]} -eq 0 ]]; then
    echo "set-up: every package is there"
    exit 0
fi

echo "set-up: installing ${missing[*]}"
run=()
if [[ $(id -u) -ne 0 ]]; then
    if ! command -v sudo >/dev/null; then
        echo "set-up: run as root, or install with your package manager: ${missing[*]}" >&2
        exit 1
    fi
    run=(sudo)
fi
export DEBIAN_FRONTEND=noninteractive
"${run[@]}" apt-get update -qq
"${run[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
echo "set-up: done"
