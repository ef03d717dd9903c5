#!/usr/bin/env bash
# demo.sh HUB [start]      opens this Hub in a private world with a small catalogue to try everything on
# In another terminal, while it runs (./run demo stands for demo.sh HUB):
#   ./run demo publish-update   the catalogue now has ZORVA DAW 13.1.0
#   ./run demo stop-server      the catalogue server goes away; start-server brings it back
#   ./run demo fault KIND       what the server does to downloads: silence, flip, truncate, oversize; none ends it
#   ./run demo reset            (not while it runs) forgets everything: the next start is a first one
# The world lives in build/demo; HUB_DEMO_DIR names another place. Without a display it runs on Xvfb and leaves a picture.
# HUB_RUN_SECONDS=n ends it after n seconds.
set -euo pipefail
help() { sed -n '2,9s/^# \{0,1\}//p' "$0"; }
[ $# -ge 1 ] || { help >&2; exit 2; }
binary="$(readlink -f "$1")"
shift
here="$(cd "$(dirname "$0")" && pwd)"
project="$(cd "$here/.." && pwd)"
demo="${HUB_DEMO_DIR:-$project/build/demo}"
host=catalogue.zorva.test
log_name=zorva-sample-programs.log

say() { printf '== %s\n' "$*"; }

# What changes a running demo needs one that was started.
need_a_demo() { [ -d "$demo/catalogue" ] || { echo "There is no demo yet: ./run demo starts one." >&2; exit 1; }; }

# Replaces the control file in one step; the server looks at it several times a second.
control() {
  printf '%s\n' "$1" > "$demo/control.new"
  mv "$demo/control.new" "$demo/control.json"
}

# The server's pace: slow enough to see a download.
plain='"rules": [ { "path": "/files/*", "rate": 1500000 } ]'

publish() {    # publish NUMBER RELEASE: the product's place in the library, and its description
  rm -f "$demo/catalogue/products/$1-"*
  cp "$demo/samples/products/$2.json" "$demo/catalogue/products/$1-$2.json"
}

prepare() {
  [ -x "$binary" ] || { echo "There is no Hub to start at $binary." >&2; exit 1; }
  mkdir -p "$demo"
  python3 "$project/tools/samples/build_samples.py" "$demo/samples"
  "$project/tools/catalogue-server/make-certs.sh" "$demo/certificates" "$host"
  control "{ $plain }"
  if [ ! -d "$demo/catalogue" ]; then
    mkdir -p "$demo/catalogue/products"
    ln -s ../samples/files "$demo/catalogue/files"
    publish 1 zorva-daw-13.0.0
    publish 2 zorva-stagewell-2.4.0
    publish 3 zorva-foundry-staples-1.0.0
    publish 4 zorva-beatpad-1.2.0
  fi
  local settings="$demo/home/.config/ZORVA Hub/settings.json"
  if [ ! -f "$settings" ]; then
    mkdir -p "$(dirname "$settings")"
    printf '{ "manifestUrl": "https://%s/manifest.json" }\n' "$host" > "$settings"
  fi
}

explain() {
  cat <<TEXT

The Hub is open, in a world of its own: it sees a home, a network and a catalogue server that exist only for it.
Nothing of yours is touched, and nothing leaves this machine.

  Try this                                   and see
  DOWNLOAD on a card                         the progress on the card and at the bottom right
  INSTALL, then Open                         ZORVA Stagewell and ZORVA Beatpad really start: a line appears here.
                                             ZORVA DAW is a Windows program; it starts where Windows programs can.
  ./run demo publish-update                  after closing the Hub and another ./run demo: ZORVA DAW shows UPDATE
  ./run demo stop-server, then a click on    REINSTALL works without a network; start-server brings the server back
    an installed card
  the three dots of a card,                  the installer goes from the Vault, the installed copy stays
    Delete from Vault
  ./run demo fault flip                      a download whose content was changed is refused; "fault none" ends it
  ./run demo reset                           after closing the Hub: forgets everything

  Its home      $demo/home
  Its catalogue $demo/catalogue

Close the window to end the demo. Without the window: Ctrl-C.

TEXT
}

# Runs inside the world: the server, the Hub, and a watch on what the started programs write.
in_world() {
  "$project/tools/catalogue-server/serve" --catalogue "$demo/catalogue" --certificates "$demo/certificates" \
    --base-url "https://$host" --control "$demo/control.json" > "$demo/server.log" 2>&1 &
  local waited=0
  until curl -s -o /dev/null "https://$host/manifest.json"; do
    waited=$((waited + 1))
    [ "$waited" -lt 100 ] || { echo "the catalogue server did not start:" >&2; cat "$demo/server.log" >&2; exit 1; }
    sleep 0.1
  done
  : > "$HOME/$log_name"
  tail -n 0 -f "$HOME/$log_name" 2>/dev/null | sed -u 's/^/== started: /' &

  if [ -n "${HUB_DEMO_PICTURE:-}" ]; then
    say "no display here: the Hub runs on a private X server"
    "$here/run-and-screenshot.sh" "$binary" "$HUB_DEMO_PICTURE"
    return
  fi
  "$binary" &
  local hub=$! status=0
  trap 'kill -INT $hub 2>/dev/null || true' INT TERM
  if [ -n "${HUB_RUN_SECONDS:-}" ]; then
    ( sleep "$HUB_RUN_SECONDS"; kill -INT "$hub" 2>/dev/null ) &
  fi
  wait "$hub" || status=$?
  while kill -0 "$hub" 2>/dev/null; do wait "$hub" || status=$?; done    # a signal ends the first wait early
  return "$status"
}

start() {
  if [ -z "${DISPLAY:-}" ]; then
    export HUB_DEMO_PICTURE="$demo/screenshot.png"
    exec "$here/xvfb.sh" "$0" "$binary" start
  fi
  prepare
  explain
  exec "$project/tools/world/run-in-world.sh" --home "$demo/home" --ca "$demo/certificates/ca.pem" --host "$host" -- "$0" "$binary" in-world
}

case "${1:-start}" in
  start)          start ;;
  in-world)       in_world ;;
  publish-update) need_a_demo; publish 1 zorva-daw-13.1.0; say "ZORVA DAW 13.1.0 is published. Close the Hub and start the demo again to see it." ;;
  stop-server)    need_a_demo; control '{ "listen": false }'; say "the catalogue server is gone" ;;
  start-server)   need_a_demo; control "{ $plain }"; say "the catalogue server is back" ;;
  fault)
    need_a_demo
    case "${2:-}" in
      silence)  control '{ "rules": [ { "path": "/files/*", "rate": 1500000, "silence": "body", "silence_after": 700000 } ] }' ;;
      flip)     control '{ "rules": [ { "path": "/files/*", "flip": 100000 } ] }' ;;
      truncate) control '{ "rules": [ { "path": "/files/*", "truncate": 700000 } ] }' ;;
      oversize) control '{ "rules": [ { "path": "/files/*", "extend": 1000000 } ] }' ;;
      none)     control "{ $plain }" ;;
      *)        echo "kinds of fault: silence, flip, truncate, oversize, none" >&2; exit 2 ;;
    esac
    say "the next download meets: $2" ;;
  reset)          rm -rf "${demo:?}/home" "$demo/catalogue" "$demo/control.json"; say "the next start is a first one" ;;
  help)           help ;;
  *)              help >&2; exit 2 ;;
esac
