# For fresh-machine and fresh-install: a minimal Debian 12 in a folder, entered by chroot. Sourced
# first thing: it starts the script again with mounts and processes of its own, so that however the
# script ends, nothing of it stays mounted or running.

[ "$(id -u)" -eq 0 ] || { echo "$0: debootstrap and chroot need root" >&2; exit 1; }
command -v debootstrap >/dev/null || { echo "$0: needs debootstrap" >&2; exit 1; }
if [ -z "${TALLYVOX_ALONE:-}" ]; then
    TALLYVOX_ALONE=yes exec unshare --mount --propagation private --pid --fork --kill-child "$0" "$@"
fi

# make_root FOLDER: debootstraps into FOLDER from the mirror that this machine's apt uses.
make_root() {
    root=$(realpath "$1")
    local mirror
    mirror=$(apt-get indextargets --format '$(REPO_URI)' 'Created-By: Packages' 'Codename: bookworm' | head -n 1)
    [ -n "$mirror" ] || { echo "$0: apt knows no mirror of Debian 12 (bookworm)" >&2; exit 1; }

    echo "Making a minimal Debian 12 in $root"
    debootstrap --variant=minbase --include=ca-certificates bookworm "$root" "$mirror" >"$root/making.log" 2>&1 ||
        { tail -n 20 "$root/making.log" >&2; exit 1; }
    # The way to the mirror: proxies, certificates and names are this machine's.
    grep -ls '^ *Acquire' /etc/apt/apt.conf.d/* | xargs -r cp -t "$root/etc/apt/apt.conf.d"
    cp /etc/resolv.conf /etc/hosts "$root/etc/"
    cp -r /usr/local/share/ca-certificates "$root/usr/local/share/"
    chroot "$root" update-ca-certificates >/dev/null 2>&1
    # Services of packages stay off.
    printf '#!/bin/sh\nexit 101\n' >"$root/usr/sbin/policy-rc.d"
    chmod +x "$root/usr/sbin/policy-rc.d"

    mount -t proc proc "$root/proc"
    mount -t tmpfs tmpfs "$root/dev/shm"
    mount -t devpts -o newinstance,ptmxmode=0666 devpts "$root/dev/pts"
}

# inside COMMAND ARGUMENT...: runs it in the root with nothing of this machine's environment but
# the way through a proxy.
inside() {
    chroot "$root" env -i HOME=/root LANG=C.UTF-8 TERM="${TERM:-dumb}" \
        PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin \
        ${http_proxy:+http_proxy="$http_proxy"} ${https_proxy:+https_proxy="$https_proxy"} "$@"
}
