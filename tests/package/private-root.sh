#!/usr/bin/env bash
# private-root.sh SCRATCH COMMAND...: runs COMMAND in a copy of this machine's root that lives in memory and in a mount namespace
# of its own, so that packages can be installed for real. What is written there stays in SCRATCH/layer/upper, and ends with
# COMMAND. SCRATCH and this project are where they are outside, the project read-only; /tmp and /var/tmp are empty.
# For root alone: run.sh says why.
set -euo pipefail
die() { echo "private-root: $*" >&2; exit 125; }

if [ "$1" != --inside ]; then
  exec unshare --mount --propagation private "$0" --inside "$@"
fi
shift
scratch="$(readlink -f "$1")"
shift
project="$(cd "$(dirname "$0")/../.." && pwd)"
root="$scratch/root"

mkdir -p "$root" "$scratch/layer"
mount -t tmpfs -o mode=755 layer "$scratch/layer" || die "no memory file system could be mounted"
mkdir "$scratch/layer/upper" "$scratch/layer/work"
mount -t overlay -o "lowerdir=/,upperdir=$scratch/layer/upper,workdir=$scratch/layer/work" root "$root" \
  || die "no overlay of / could be mounted"
touch "$root/.private-root"

for place in dev proc sys; do
  mount --rbind "/$place" "$root/$place"
done
mount -t tmpfs -o mode=1777 tmp "$root/tmp"
mount -t tmpfs -o mode=1777 tmp "$root/var/tmp"
mkdir -p "$root$scratch" "$root$project"
mount --rbind "$scratch" "$root$scratch"
mount --bind "$project" "$root$project"
mount -o remount,bind,ro "$root$project"
exec chroot "$root" "$@"
