#!/usr/bin/env bash
# run.sh BINARY [PATTERN...]: drives the Hub's binary, as it is shipped, through the end-to-end tests in a private world.
# PATTERN: only tests whose name contains one of these. Pictures of failures go to build/e2e/pictures (or $HUB_E2E_OUT).
# A binary that ends in .exe runs under Wine, and its pictures go to build/e2e-windows/pictures.
# The last line is "N passed, N failed", for Windows with ", N left out"; the exit code is 0 when none failed.
set -euo pipefail
here="$(cd "$(dirname "$0")" && pwd)"
project="$(cd "$here/../.." && pwd)"
[ $# -ge 1 ] || { sed -n '2,5s/^# //p' "$0" >&2; exit 2; }
binary="$(readlink -f "$1")"
shift
[ -x "$binary" ] || { echo "run.sh: there is no program $binary" >&2; exit 2; }

kind='' windows=()
[[ "$binary" != *.exe ]] || { kind=-windows windows=(--windows); }
out="${HUB_E2E_OUT:-$project/build/e2e$kind}"
mkdir -p "$out"
rm -rf "$out/pictures"
mkdir "$out/pictures"
scratch="$(mktemp -d)"
world=
# shellcheck disable=SC2317  # called by the trap
cleanup() {
  [ -z "$world" ] || kill -KILL "$world" 2>/dev/null || true    # takes every process of the world with it
  rm -rf "$scratch"
}
trap cleanup EXIT
trap 'exit 130' INT TERM

python3 "$project/tools/samples/build_samples.py" "${windows[@]}" "$out/samples"
"$project/tools/catalogue-server/make-certs.sh" "$out/certificates" catalogue.zorva.test api.openai.com
"${CC:-cc}" -O1 -Wall -shared -fPIC -o "$out/kill_at_rename.so" "$here/kill_at_rename.c" -ldl

unset DISPLAY XAUTHORITY WAYLAND_DISPLAY DBUS_SESSION_BUS_ADDRESS LD_PRELOAD
export PYTHONDONTWRITEBYTECODE=1 LC_ALL=C.UTF-8
"$project/tools/world/run-in-world.sh" --home "$scratch/home" --ca "$out/certificates/ca.pem" --host catalogue.zorva.test \
  --host api.openai.com=127.0.0.2 -- \
  python3 "$here/runner.py" --binary "$binary" --samples "$out/samples" --certificates "$out/certificates" \
    --killer "$out/kill_at_rename.so" --scratch "$scratch" --pictures "$out/pictures" "$@" &
world=$!
rc=0
wait "$world" || rc=$?
world=
exit "$rc"
