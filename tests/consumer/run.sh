#!/usr/bin/env bash
# Installs a build into a folder of its own, builds the consumer against it and runs it.
# Usage: run.sh BUILD_DIR SOURCE_DIR WORK_DIR [CMAKE_ARGUMENT...]
set -euo pipefail
rm -rf "$3"
cmake --install "$1" --prefix "$3/prefix" >/dev/null
cmake -S "$2" -B "$3/build" -DCMAKE_PREFIX_PATH="$3/prefix" "${@:4}"
cmake --build "$3/build"
# Where the build was relocated to, not where it was made.
LD_LIBRARY_PATH=$(dirname "$(find "$3/prefix" -name 'libZNTAds.so' -print -quit)") "$3/build/consumer"
