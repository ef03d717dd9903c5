#!/usr/bin/env bash
# run.sh [PACKAGE]: builds the Debian package, or takes the given one; judges it; then installs it in a private copy of this
# machine's root, starts the Hub as a desktop would, removes it, and looks for what is left.
# The last line is "N passed, N failed"; the exit code is 0 when none failed.
set -euo pipefail
here="$(cd "$(dirname "$0")" && pwd)"
project="$(cd "$here/../.." && pwd)"
if [ $# -gt 0 ]; then
  package="$(readlink -f "$1")"
else
  package="$("$project/scripts/package.sh")"
fi
[ -f "$package" ] || { echo "run.sh: there is no package $package" >&2; exit 2; }
# A user namespace has no power over the root's files, so that dpkg could not write even into a copy of them.
[ "$(id -u)" = 0 ] || exec sudo -- "$here/run.sh" "$package"

scratch="$(mktemp -d)"
world=
# shellcheck disable=SC2317  # called by the trap
cleanup() {
  [ -z "$world" ] || kill -KILL "$world" 2>/dev/null || true    # takes every process of the world with it
  rm -rf "$scratch"
}
trap cleanup EXIT
trap 'exit 130' INT TERM

cp "$package" "$scratch/package.deb"
unset DISPLAY XAUTHORITY WAYLAND_DISPLAY DBUS_SESSION_BUS_ADDRESS LD_PRELOAD
export PYTHONDONTWRITEBYTECODE=1 LC_ALL=C.UTF-8
"$project/tools/world/run-in-world.sh" --home "$scratch/home" --ca /etc/ssl/certs/ca-certificates.crt -- \
  "$here/private-root.sh" "$scratch" python3 "$here/runner.py" debian "$scratch" "$scratch/package.deb" &
world=$!
rc=0
wait "$world" || rc=$?
world=
exit "$rc"
