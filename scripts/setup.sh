#!/usr/bin/env bash
# Installs the Debian packages that are missing. Usage: scripts/setup.sh [build] [lint] [bench] [fuzz] [art]
set -euo pipefail
cd "$(dirname "$0")/.."

build=(
    g++ cmake ninja-build ccache
    qt6-base-dev qt6-declarative-dev qt6-declarative-dev-tools qt6-multimedia-dev qt6-sensors-dev
    libgl1-mesa-dev
    qml6-module-qtquick qml6-module-qtquick-window qml6-module-qtqml qml6-module-qtqml-models
    qml6-module-qtqml-workerscript qml6-module-qttest
    qml6-module-qtquick-controls qml6-module-qtquick-layouts qml6-module-qtquick-templates
    libssl-dev zlib1g-dev fonts-noto-cjk
    qt6-image-formats-plugins gstreamer1.0-plugins-base gstreamer1.0-plugins-good gstreamer1.0-libav
    nghttp2-server openssl
)
lint=(clang-format clang-tidy clazy doxygen)
fuzz=(clang libclang-rt-dev)
art=(librsvg2-bin pngquant zopfli ffmpeg fonts-noto-cjk)
bench=(python3 libbenchmark-dev libspdlog-dev libopencv-imgproc-dev)

wanted=()
for group in "${@:-build}"; do
    case "$group" in
        build) wanted+=("${build[@]}") ;;
        lint) wanted+=("${lint[@]}") ;;
        bench) wanted+=("${bench[@]}") ;;
        fuzz) wanted+=("${fuzz[@]}") ;;
        art) wanted+=("${art[@]}") ;;
        *) echo "setup.sh: unknown group '$group'" >&2; exit 2 ;;
    esac
done

if ! command -v dpkg-query >/dev/null; then
    echo "setup.sh: knows Debian's packages only; install the counterparts of: ${wanted[*]}" >&2
    exit 1
fi
installed=$(dpkg-query -W -f='${db:Status-Status} ${Package}\n' 2>/dev/null | sed -n 's/^installed //p')
missing=()
for package in "${wanted[@]}"; do
    grep -qx "$package" <<<"$installed" || missing+=("$package")
done
[ ${#missing[@]} -gt 0 ] || exit 0

echo "Installing: ${missing[*]}"
root=()
[ "$(id -u)" = 0 ] || root=(sudo)
export DEBIAN_FRONTEND=noninteractive
"${root[@]}" apt-get update -q
"${root[@]}" apt-get install -q -y --no-install-recommends "${missing[@]}"
