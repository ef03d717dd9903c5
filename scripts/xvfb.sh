#!/usr/bin/env bash
# xvfb.sh COMMAND...: runs COMMAND on a private X server (a free display number) with the openbox window manager.
set -u
pipe="$(mktemp -u)"
mkfifo "$pipe"
Xvfb -displayfd 3 -screen 0 "${HUB_SCREEN:-1400x900x24}" -nolisten tcp 3>"$pipe" >/dev/null 2>&1 &
server=$!
read -r number < "$pipe"
rm -f "$pipe"
export DISPLAY=":$number"
openbox >/dev/null 2>&1 &
manager=$!
for _ in $(seq 50); do xdotool get_desktop >/dev/null 2>&1 && break; sleep 0.1; done   # answers once a window manager runs
finish() {
  kill "$manager" "$server" 2>/dev/null
  wait "$manager" "$server" 2>/dev/null
}
trap 'kill "$command" 2>/dev/null; wait "$command" 2>/dev/null; finish; exit 143' TERM INT
"$@" <&0 &          # in the background, where the shell can still hear a signal; a Ctrl-C is passed on as SIGTERM
command=$!
wait "$command"
rc=$?
finish
exit "$rc"
