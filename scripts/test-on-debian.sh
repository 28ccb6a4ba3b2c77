#!/usr/bin/env bash
# Builds HEAD and runs every test in a chroot of another Debian release, with that release's Qt. Needs root.
# The chroot is kept, with its build, for the next run. Usage: scripts/test-on-debian.sh SUITE [PRESET]
# ZNTADS_CHROOTS is the folder of the chroots (build/chroots).
set -euo pipefail
cd "$(dirname "$0")/.."
[ $# -gt 0 ] || { echo "Usage: test-on-debian.sh SUITE [PRESET]" >&2; exit 2; }
[ "$(id -u)" = 0 ] || { echo "test-on-debian.sh: needs root" >&2; exit 1; }
suite=$1
preset=${2:-dev}
chroots=$(realpath -m "${ZNTADS_CHROOTS:-build/chroots}")
chroot=$chroots/$suite

# Mounts are made in a namespace of their own, so that they end with whatever made them.
make_chroot() {
    local mirror
    mirror=$(apt-get indextargets --format '$(REPO_URI)' 'Label: Debian' 'Created-By: Packages' | sed -n 1p)
    [ -n "$mirror" ] || { echo "test-on-debian.sh: apt knows no Debian mirror; apt-get update?" >&2; exit 1; }
    eval "$(apt-config shell http_proxy Acquire::http::Proxy https_proxy Acquire::https::Proxy)"
    command -v debootstrap >/dev/null || apt-get install -q -y --no-install-recommends debootstrap
    rm -rf --one-file-system "$chroot.new"
    mkdir -p "$chroots"
    unshare --mount debootstrap --variant=minbase "$suite" "$chroot.new" "$mirror"
    mv "$chroot.new" "$chroot"
}

# The chroot reaches its mirror, and itself, as this machine does.
copy_network_settings() {
    local file
    for file in /etc/hosts /etc/resolv.conf /etc/apt/apt.conf /etc/ssl/certs/ca-certificates.crt \
        /etc/apt/apt.conf.d/*; do
        [ ! -e "$file" ] || install -D -m 644 "$file" "$chroot$file"
    done
}

# Changes only the files that differ, so that only these are built again.
refresh_checkout() {
    local checkout=$chroot/zntads
    [ -e "$checkout" ] || git init -q "$checkout"
    git -C "$checkout" fetch -q "$PWD" HEAD
    git -C "$checkout" checkout -q --force --detach FETCH_HEAD
}

export http_proxy=${http_proxy:-} https_proxy=${https_proxy:-}
[ -e "$chroot" ] || make_chroot
copy_network_settings
refresh_checkout
exec unshare --mount --pid --fork --kill-child bash -euc '
    mount --rbind /dev "$0/dev"
    mount -t proc proc "$0/proc"
    exec chroot "$0" env -i HOME=/root PATH=/usr/sbin:/usr/bin:/sbin:/bin LANG=C.UTF-8 \
        http_proxy="$http_proxy" https_proxy="$https_proxy" /zntads/scripts/test.sh "$1"
' "$chroot" "$preset"
