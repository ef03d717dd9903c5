#!/usr/bin/env bash
# run-and-screenshot.sh HUB PICTURE: starts the Hub on the current display, saves a picture of the screen once its window is there,
# and waits for its end. HUB_RUN_SECONDS=n ends it after n seconds.
set -u
"$1" &
hub=$!
trap 'kill -INT "$hub" 2>/dev/null' INT TERM
# A window that vanishes while xdotool looks at it ends xdotool, so it is asked again and again.
appeared=
for _ in $(seq 300); do
  xdotool search --onlyvisible --name '^ZORVA Hub$' >/dev/null 2>&1 && { appeared=1; break; }
  sleep 0.2
done
[ -n "$appeared" ] || { echo "the window did not appear" >&2; kill -INT "$hub"; exit 1; }
sleep 2   # the catalogue settles and the page is painted
mkdir -p "$(dirname "$2")"
import -window root "$2" && echo "== screenshot: $2"
if [ -n "${HUB_RUN_SECONDS:-}" ]; then
  sleep "$HUB_RUN_SECONDS"
  kill -INT "$hub"
fi
wait "$hub"
