#!/usr/bin/env bash
# windows.sh [INSTALLER]: builds the Windows installer, or takes the given one; then installs the Hub silently under Wine in a prefix of
# its own, starts it from the start menu, updates, removes it, and looks for what is left. Each step is told with its time.
# The last line is "N passed, N failed"; the exit code is 0 when none failed.
set -euo pipefail
here="$(cd "$(dirname "$0")" && pwd)"
project="$(cd "$here/../.." && pwd)"
if [ $# -gt 0 ]; then
  installer="$(readlink -f "$1")"
else
  installer="$("$project/scripts/package.sh" windows)"
fi
[ -f "$installer" ] || { echo "windows.sh: there is no installer $installer" >&2; exit 2; }

scratch="$(mktemp -d)"
world=
# shellcheck disable=SC2317  # called by the trap
cleanup() {
  [ -z "$world" ] || kill -KILL "$world" 2>/dev/null || true    # takes every process of the world with it
  rm -rf "$scratch"
}
trap cleanup EXIT
trap 'exit 130' INT TERM

unset DISPLAY XAUTHORITY WAYLAND_DISPLAY LD_PRELOAD
export PYTHONDONTWRITEBYTECODE=1 LC_ALL=C.UTF-8
export WINEPREFIX="$scratch/prefix" WINEARCH=win64 WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml=;winemenubuilder.exe=d"
"$project/tools/world/run-in-world.sh" --home "$scratch/home" --ca /etc/ssl/certs/ca-certificates.crt -- \
  python3 "$here/runner.py" windows "$scratch" "$installer" &
world=$!
rc=0
wait "$world" || rc=$?
world=
exit "$rc"
