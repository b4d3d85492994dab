#!/bin/sh
# Runs share_users over three mounts of a GlusterFS volume of two bricks, with its default options and with
# those that docs/multi-user.md recommends.
#
#   share.sh --able                says what is missing, if anything, by exit code and text
#   share.sh PROGRAM               users at work, one killed, one whose mount is cut off
#
# Daemons, mounts and addresses live in namespaces that end with this script, whatever ends it; files, in a
# scratch folder that goes with it. Needs root, FUSE, glusterfs-server and glusterfs-client.
set -eu

address=198.51.100.1
tuned_mount=direct-io-mode=enable,attribute-timeout=0,entry-timeout=0
tuned_volume="performance.quick-read=off performance.stat-prefetch=off performance.open-behind=off"

unable() {
    echo "share: skipped, $1"
    exit 3
}

able() {
    [ "$(id -u)" = 0 ] || unable "not root"
    [ -c /dev/fuse ] || unable "no FUSE here"
    for tool in glusterd glusterfs gluster mount.glusterfs unshare setpriv ip; do
        command -v $tool >/dev/null || unable "no $tool here"
    done
    unshare --mount --net --pid --fork true 2>/dev/null || unable "no namespaces here"
}

# What is killed with this script: all that runs inside.
outside() {
    able
    scratch=$(mktemp -d "${TMPDIR:-/tmp}/tsrtm-share-XXXXXX")
    trap 'rm -rf "$scratch"' EXIT
    trap 'exit 1' HUP INT TERM
    setpriv --pdeathsig KILL unshare --mount --net --pid --fork --kill-child --mount-proc \
        sh "$0" --inside "$scratch" "$@"
}

# Waits half a minute for a command to succeed.
patiently() {
    tries=0
    until "$@" >>"$scratch/setup.log" 2>&1; do
        tries=$((tries + 1))
        [ $tries -lt 60 ] || { cat "$scratch/setup.log" >&2; return 1; }
        sleep 0.5
    done
}

# What the daemons keep and say stays in memory.
private_folders() {
    ip link set lo up
    ip addr add $address/32 dev lo
    for folder in /run /var/lib/glusterd /var/log/glusterfs; do
        mkdir -p $folder
        mount -t tmpfs none $folder
    done
    mkdir -p /run/gluster
}

# make_volume NAME "mount options" "option=value ...": the volume, and three mounts of it below $base.
make_volume() {
    base=$scratch/$1
    mkdir -p "$base/brick1" "$base/brick2"
    gluster --mode=script volume create "$1" "$address:$base/brick1" "$address:$base/brick2" force \
        >>"$scratch/setup.log"
    for option in $3; do
        gluster --mode=script volume set "$1" "${option%%=*}" "${option#*=}" >>"$scratch/setup.log"
    done
    gluster --mode=script volume start "$1" >>"$scratch/setup.log"
    cat >"$base/mount" <<EOF
#!/bin/sh
mkdir -p "\$1"
exec mount -t glusterfs${2:+ -o $2} $address:/$1 "\$1"
EOF
    chmod +x "$base/mount"
    for n in 1 2 3; do
        patiently "$base/mount" "$base/m$n"
        patiently mountpoint "$base/m$n"
    done
}

end_volume() {
    for n in 1 2 3; do umount -l "$base/m$n"; done
    gluster --mode=script volume stop "$1" force >>"$scratch/setup.log" || true
}

trial() {
    echo "share, $1: $2"
    shift 2
    runs=$((runs + 1))
    "$program" "$@" || worst=1
}

inside() {
    scratch=$1
    program=$2
    private_folders
    glusterd
    patiently gluster volume list
    runs=0
    worst=0
    for kind in default tuned; do
        if [ $kind = tuned ]; then
            make_volume $kind $tuned_mount "$tuned_volume"
        else
            make_volume $kind "" ""
        fi
        trial "$kind options" "three users, one who reads, one killed" \
            office 20 "$base/m1/office" "$base/m2/office" "$base/m3/office"
        trial "$kind options" "a mount cut off at work" cut "$base/m1/cut" "$base/m2/cut" "$base/m4" "$base/mount"
        end_volume $kind
    done
    if [ $worst = 0 ]; then
        echo "share: $runs runs, nothing lost, nothing wrong, no lock left, all sound"
    else
        echo "share: $runs runs, FAILED"
    fi
    return $worst
}

case ${1-} in
--able) able ;;
--inside)
    shift
    inside "$@"
    ;;
"" | -*)
    sed -n '5,6s/^# \{0,1\}//p' "$0" >&2
    exit 2
    ;;
*) outside "$@" ;;
esac
