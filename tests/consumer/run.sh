#!/usr/bin/env bash
# Builds the hosts of this folder in an empty one and has them show ads of the sandbox exchange.
# Usage: QMLLINT=PROGRAM run.sh installed|fetched BUILD_DIR SOURCE_DIR WORK_DIR [CMAKE_ARGUMENT...]
#   installed: with what BUILD_DIR installs, which is a shared library
#   fetched: with SOURCE_DIR's library in the host's own build, a static one made as few units without
#            precompiled headers, then with what that build installs
set -euo pipefail
kind=$1 build=$2 source=$3 work=$4
export CCACHE_BASEDIR=$work

rm -rf "$work"
mkdir -p "$work"
cp -r "$source/tests/consumer" "$work/host"
cp "$source/examples/sandbox.h" "$work/host"
cd "$work"

build_hosts() { # BUILD_DIR CMAKE_ARGUMENT...
    cmake -S host -B "$1" "${common[@]}" "${@:2}" >"$1.log" || { cat "$1.log"; return 1; }
    cmake --build "$1"
}
run() { HOME=$work/home "$@"; }
run_hosts() { # BUILD_DIR: all at once, for they mostly wait
    local hosts=() host test
    run "$1/cpphost" "$https" "$http" "$ca" & hosts+=($!)
    run "$1/qmlonly" & hosts+=($!)
    run "$1/qmlhost" "$http/creatives/video.mp4" & hosts+=($!)
    for test in hosttest quicktest; do
        [ ! -e "$1/$test" ] || run "$1/$test" || return 1
    done
    for host in "${hosts[@]}"; do wait "$host"; done
}
common=("${@:5}")

mkfifo says
"$build/sandbox/zntads-exchange" --state-dir state >says 2>exchange.log &
trap 'kill %1' EXIT
exec 3<says
read -r listening <&3
cat <&3 >/dev/null &
field() { sed -E "s/.*\"$1\": ?\"([^\"]*)\".*/\1/" <<<"$listening"; }
https=$(field https) http=$(field http) ca=$(field ca)

installed() {
    cmake --install "$build" --prefix prefix >/dev/null
    build_hosts shared -D CMAKE_PREFIX_PATH="$work/prefix" -D CMAKE_CXX_STANDARD=17
    run_hosts shared
    libraries=$(dirname "$(find prefix -name libZNTAds.so)")
    "$QMLLINT" -I "$libraries/qt6/qml" host/Main.qml

    export PKG_CONFIG_PATH=$libraries/pkgconfig
    # shellcheck disable=SC2046
    "${CXX:-c++}" -std=c++17 -fPIC -DMAIN_QML="\"$work/host/Main.qml\"" host/qmlhost.cpp -o with-pkg-config \
        $(pkg-config --cflags --libs zntads)
    LD_LIBRARY_PATH=$libraries run ./with-pkg-config

    rm "$libraries"/qt6/plugins/zntads/*
    run shared/qmlhost 2>log
    grep -q "Cannot sense motion: libzntads_motion.so is missing" log
}

fetched() {
    build_hosts fetched -D FETCHCONTENT_SOURCE_DIR_ZNTADS="$source" -D ZNTADS_INSTALL=ON \
        -D CMAKE_UNITY_BUILD=ON -D CMAKE_UNITY_BUILD_BATCH_SIZE=16 \
        -D CMAKE_DISABLE_PRECOMPILE_HEADERS=ON -D CMAKE_CXX_STANDARD=23 \
        -D CMAKE_CXX_FLAGS="-O0 -Werror=missing-declarations"
    run_hosts fetched
    cmake --install fetched --prefix prefix >/dev/null
    build_hosts static -D CMAKE_PREFIX_PATH="$work/prefix"
    run_hosts static
}

"$kind"
