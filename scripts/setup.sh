#!/usr/bin/env bash
# Installs the packages the project needs and unpacks the JUCE 8.0.6 source. Safe to run again: it does only what is
# missing, and changes nothing in /etc/apt.
set -euo pipefail
cd "$(dirname "$0")/.."

packages=(
  clang-19 lld-19 libclang-rt-19-dev cmake ninja-build pkg-config ccache git
  libfreetype-dev libfontconfig-dev libx11-dev libxext-dev libxrandr-dev libxinerama-dev libxcursor-dev
  libpng-dev libjpeg-dev zlib1g-dev libcurl4-openssl-dev libssl-dev libsecret-1-dev libgtest-dev libbenchmark-dev
  g++-mingw-w64-x86-64-posix
  fonts-dejavu-core xvfb xauth openbox xdotool dbus dbus-daemon gnome-keyring libsecret-tools wmctrl imagemagick x11-utils xdg-utils
  python3 openssl curl zip unzip util-linux iproute2
  dpkg-dev ca-certificates debian-archive-keyring
  desktop-file-utils appstream lintian file libglib2.0-bin )

if ! command -v apt-get >/dev/null; then
  echo "This script installs packages on Debian 12 or 13. On another system install the equivalents of:" >&2
  printf '  %s\n' "${packages[@]}" >&2
  echo "and point HUB_JUCE_DIR at an unpacked JUCE 8.0.6." >&2
  exit 1
fi

missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${db:Status-Abbrev}' "$p" 2>/dev/null | grep -q '^ii' || missing+=("$p")
done
if ((${#missing[@]})); then
  sudo=; [ "$(id -u)" = 0 ] || sudo=sudo
  echo "== installing: ${missing[*]}"
  $sudo apt-get update -qq
  $sudo env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}"
fi

juce="${HUB_JUCE_DIR:-$PWD/third_party/juce}"
[ -f "$juce/.complete" ] && exit 0
if [ -n "${HUB_JUCE_DIR:-}" ]; then
  [ -f "$juce/CMakeLists.txt" ] && exit 0
  echo "HUB_JUCE_DIR holds no JUCE source: $juce" >&2
  exit 1
fi

echo "== JUCE 8.0.6 from Debian 13's source package"
version=8.0.6+ds
tmp="$(mktemp -d)"
trap 'rm -rf "$tmp"' EXIT
mkdir -p "$tmp/lists/partial" "$tmp/cache/archives/partial" "$tmp/src"
# The mirror this machine already uses.
mirror="$(apt-get indextargets --format '$(ORIGIN)|$(REPO_URI)' | sed -n 's/^Debian|//p' | grep -v security | sort -u | head -n 1)"
[ -n "$mirror" ] || { echo "run apt-get update first: no Debian mirror is known" >&2; exit 1; }
echo "deb-src [signed-by=/usr/share/keyrings/debian-archive-keyring.gpg] $mirror trixie main" > "$tmp/sources.list"
apt=(apt-get -q -o "Dir::Etc::sourcelist=$tmp/sources.list" -o Dir::Etc::sourceparts=/dev/null
     -o "Dir::State::Lists=$tmp/lists" -o "Dir::Cache=$tmp/cache" -o APT::Sandbox::User=root)
"${apt[@]}" update
(cd "$tmp/src" && "${apt[@]}" source --download-only "juce=$version-2")
(cd "$tmp/src" && sha256sum -c --quiet <<SUMS
4126ec8066866a1ccbc9cdd2beac712fd51e55ac7f24d8fdc45077b187a358ef  juce_8.0.6+ds.orig.tar.xz
98f781365d85d35639b5c47416b769c3d68ad9858c8559fc6c80bb95710976a1  juce_8.0.6+ds-2.debian.tar.xz
SUMS
)
rm -rf "$juce"
mkdir -p "$(dirname "$juce")"
dpkg-source --no-check -x "$tmp/src/juce_$version-2.dsc" "$juce" >/dev/null
touch "$juce/.complete"
