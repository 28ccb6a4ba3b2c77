#!/usr/bin/env bash
# Formatting of everything, who may include whom, the public headers' reference, and clazy, clang-tidy and
# qmllint over the library, the exchange and the examples. Changes nothing.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh build lint

mapfile -t sources < <(git ls-files '*.cpp' '*.h')
clang-format --dry-run --Werror "${sources[@]}"

scripts/check-includes.sh

mkdir -p build
doxygen docs/Doxyfile

# One compilation of everything by clazy gives clang's warnings and clazy's, all of them errors.
cmake --preset clazy >/dev/null
cmake --build --preset clazy

cmake --build --preset clazy --target all_qmllint

mapfile -t units < <(git ls-files 'src/*.cpp' 'sandbox/*.cpp' 'examples/*.cpp')
printf '%s\n' "${units[@]}" | xargs -P "$(nproc)" -n 4 clang-tidy -p build/clazy --quiet
echo "lint: clean"
