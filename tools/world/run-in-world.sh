#!/usr/bin/env bash
# run-in-world.sh --home FOLDER --ca FILE [--host NAME[=ADDRESS]]... [--] COMMAND...
#
# Runs COMMAND in a private world and ends with its exit code:
#   home        FOLDER, made if missing, is HOME
#   network     nothing but a loopback of its own, on which port 443 is free; each NAME leads to 127.0.0.1, or with
#               NAME=ADDRESS to another address of the loopback
#   trust       the certificate authorities in FILE and no others
#   /var/tmp    empty, so that a Hub of this world and one outside do not take each other for a second start
#   processes   whatever COMMAND leaves behind ends with it
# No proxy variable is passed on, and no session bus: secrets go to whatever store COMMAND starts, never to yours. An X display
# outside stays reachable by its socket file. Needs no special rights where the system allows user namespaces; root needs none.
set -euo pipefail

bundle=/etc/ssl/certs/ca-certificates.crt

die() { echo "run-in-world: $*" >&2; exit 125; }

# The second half, inside the new namespaces: lays out the world, then becomes the command's parent.
enter() {
  local ca="$1" hosts="$2"
  shift 2
  mount -t tmpfs -o mode=1777 world /var/tmp || die "no memory file system could be mounted on /var/tmp"
  mkdir /var/tmp/.world
  printf '127.0.0.1 localhost\n::1 localhost\n%b' "$hosts" > /var/tmp/.world/hosts
  mount --bind /var/tmp/.world/hosts /etc/hosts || die "/etc/hosts could not be replaced"
  mount --bind "$ca" "$bundle" || die "$bundle could not be replaced"
  # Some containers forbid a new /proc. The command then sees the numbers of outside there, which only confuses "ps".
  mount -t proc proc /proc 2>/dev/null || true
  ip link set lo up || die "the loopback could not be started"
  "$@"
}

if [ "${1:-}" = --inside ]; then
  shift
  enter "$@"
  exit
fi

# Adds the line of the hosts file for NAME or NAME=ADDRESS. The line ends are written out by printf %b.
add_host() {
  local name="${1%%=*}" address=127.0.0.1
  [ "$name" = "$1" ] || address="${1#*=}"
  [[ "$name" =~ ^[A-Za-z0-9.-]+$ && "$address" =~ ^127\.[0-9]+\.[0-9]+\.[0-9]+$ ]] || die "not a host of the loopback: $1"
  hosts="$hosts$address $name\\n"
}

home='' ca='' hosts=''
while [ $# -gt 0 ]; do
  case "$1" in
    --home) home="$2"; shift 2 ;;
    --ca)   ca="$2"; shift 2 ;;
    --host) add_host "$2"; shift 2 ;;
    --)     shift; break ;;
    -*)     die "unknown option $1" ;;
    *)      break ;;
  esac
done
if [ -z "$home" ] || [ -z "$ca" ] || [ $# -eq 0 ]; then
  sed -n '2,12s/^# \{0,1\}//p' "$0" >&2
  exit 2
fi
[ -f "$ca" ] || die "there is no file $ca"
[ -f "$bundle" ] || die "there is no $bundle (on Debian it comes with the package ca-certificates)"
for tool in unshare mount ip; do
  command -v "$tool" >/dev/null || PATH="$PATH:/usr/sbin:/sbin"
  command -v "$tool" >/dev/null || die "the command $tool is missing (packages util-linux and iproute2)"
done

namespaces=(--mount --net --pid --fork --kill-child)
if [ "$(id -u)" != 0 ] || ! unshare "${namespaces[@]}" true 2>/dev/null; then
  namespaces=(--user --map-root-user "${namespaces[@]}")
  if ! reason="$(unshare "${namespaces[@]}" true 2>&1)"; then
    die "this system refuses private namespaces: $reason
  As an ordinary user they need user namespaces: \"sysctl kernel.unprivileged_userns_clone\" and
  \"sysctl kernel.apparmor_restrict_unprivileged_userns\" tell whether they are switched off. A container may need more rights."
  fi
fi

# A display keeps its key file although HOME changes.
if [ -n "${DISPLAY:-}" ] && [ -z "${XAUTHORITY:-}" ] && [ -f "$HOME/.Xauthority" ]; then
  export XAUTHORITY="$HOME/.Xauthority"
fi
mkdir -p "$home"
HOME="$(cd "$home" && pwd)"
export HOME
unset http_proxy https_proxy ftp_proxy all_proxy no_proxy HTTP_PROXY HTTPS_PROXY FTP_PROXY ALL_PROXY NO_PROXY \
      SSL_CERT_FILE SSL_CERT_DIR CURL_CA_BUNDLE DBUS_SESSION_BUS_ADDRESS XDG_RUNTIME_DIR \
      XDG_CONFIG_HOME XDG_DATA_HOME XDG_CACHE_HOME XDG_STATE_HOME
exec unshare "${namespaces[@]}" "$(readlink -f "$0")" --inside "$(readlink -f "$ca")" "$hosts" "$@"
