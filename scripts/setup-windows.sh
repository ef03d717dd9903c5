#!/usr/bin/env bash
# Prepares the Windows build on Debian 12 or 13: installs the cross compiler's packages and Wine, and leaves in third_party/windows the
# Windows headers (mingw-w64 of Debian 13), the picture and compression libraries built for Windows, and the Windows copy of JUCE. Safe to
# run again: it does only what is missing, and changes nothing in /etc/apt.
set -euo pipefail
cd "$(dirname "$0")/.."

packages=( llvm-19 g++-mingw-w64-x86-64-posix googletest wine wine64 ttf-bitstream-vera patch perl nsis )
layout=1    # to be raised with every change of what is left in third_party/windows

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

unset HUB_JUCE_DIR    # the copy is made of the JUCE that setup.sh leaves
scripts/setup.sh

target="$PWD/third_party/windows"
[ "$(cat "$target/.complete" 2>/dev/null)" = "$layout" ] && exit 0
rm -rf "$target"
mkdir -p "$target"

# ---- the Windows headers and import libraries, and the sources of the three libraries ---------------------
# All of Debian 13, whatever this machine is, with the security fixes that it has by now; apt checks the signatures.
echo "== Windows headers and library sources from Debian 13"
tmp="$(mktemp -d)"
trap 'rm -rf "$tmp"' EXIT
mkdir -p "$tmp/lists/partial" "$tmp/cache/archives/partial" "$tmp/headers" "$tmp/src"
mirror="$(apt-get indextargets --format '$(ORIGIN)|$(REPO_URI)' | sed -n 's/^Debian|//p' | grep -v security | sort -u | head -n 1)"
[ -n "$mirror" ] || { echo "run apt-get update first: no Debian mirror is known" >&2; exit 1; }
for type in deb deb-src; do
  echo "$type [signed-by=/usr/share/keyrings/debian-archive-keyring.gpg] $mirror trixie main"
done > "$tmp/sources.list"
apt=(apt-get -q -o "Dir::Etc::sourcelist=$tmp/sources.list" -o Dir::Etc::sourceparts=/dev/null
     -o "Dir::State::Lists=$tmp/lists" -o "Dir::Cache=$tmp/cache" -o APT::Sandbox::User=root)
"${apt[@]}" update
(cd "$tmp/headers" && "${apt[@]}" download mingw-w64-common mingw-w64-x86-64-dev)
for package in "$tmp"/headers/*.deb; do dpkg -x "$package" "$target/mingw"; done
# Source and changes one by one, since not every mirror has the description of the two.
for part in --tar-only --diff-only; do
  (cd "$tmp/src" && "${apt[@]}" source --download-only "$part" zlib libpng1.6 libjpeg-turbo)
done
for name in zlib libpng1.6 libjpeg-turbo; do
  mkdir "$tmp/$name"
  tar -xf "$tmp/src/${name}"_*.orig.tar.* -C "$tmp/$name" --strip-components=1
  tar -xf "$tmp/src/${name}"_*.debian.tar.* -C "$tmp/$name"
  [ ! -f "$tmp/$name/debian/patches/series" ] || while read -r change; do
    [[ "$change" =~ ^(#|$) ]] || patch -s -p1 -d "$tmp/$name" < "$tmp/$name/debian/patches/$change"
  done < "$tmp/$name/debian/patches/series"
done
(cd "$tmp" && ls headers/*.deb src/*.debian.tar.*) | sed 's|.*/||' > "$target/versions.txt"

# ---- zlib, libpng and libjpeg, static -----------------------------------------------------------------
build() {    # build NAME CMAKE-OPTION...: what is installed lands in third_party/windows/lib and include
  local name="$1"
  shift
  cmake -G Ninja -S "$tmp/$name" -B "$tmp/$name-build" -DCMAKE_TOOLCHAIN_FILE="$PWD/cmake/windows/toolchain.cmake" \
    -DCMAKE_BUILD_TYPE=Release -DCMAKE_INSTALL_PREFIX="$target" -DBUILD_SHARED_LIBS=OFF "$@" > "$tmp/$name.log" 2>&1 &&
  ninja -C "$tmp/$name-build" ${targets:-install} >> "$tmp/$name.log" 2>&1 || { tail -n 30 "$tmp/$name.log" >&2; exit 1; }
}
echo "== zlib, libpng and libjpeg for Windows"
mkdir -p "$target/lib" "$target/include"
targets=zlibstatic build zlib
cp "$tmp/zlib/zlib.h" "$tmp/zlib-build/zconf.h" "$target/include"
cp "$tmp/zlib-build/libzlibstatic.a" "$target/lib/libz.a"
build libpng1.6 -DPNG_SHARED=OFF -DPNG_TESTS=OFF -DPNG_TOOLS=OFF -DPNG_LIBCONF_HEADER="$tmp/libpng1.6/scripts/pnglibconf.h.prebuilt"
build libjpeg-turbo -DENABLE_SHARED=OFF -DWITH_SIMD=OFF -DWITH_TURBOJPEG=OFF
cp "$tmp/libjpeg-turbo/jpegint.h" "$target/include"
rm -rf "$target/bin" "$target/share"

# ---- JUCE, changed for this compiler and for Wine -----------------------------------------------------
echo "== the Windows copy of JUCE"
mkdir "$target/juce"
cp -r third_party/juce/. "$target/juce"
modules="$target/juce/modules"

change() {    # change FILE FROM TO: exactly this text, where it stands; it must stand there
  grep -qF -- "$2" "$modules/$1" || { echo "JUCE has changed: no \"$2\" in $1" >&2; exit 1; }
  FROM="$2" TO="$3" perl -i -pe 's/\Q$ENV{FROM}\E/$ENV{TO}/' "$modules/$1"
}

# Debian's addition for 32-bit systems collides on Windows, where unsigned int and uint32 are the same.
patch -s -R -p1 -d "$target/juce" < third_party/juce/debian/patches/32bit.patch
# This compiler is refused by name only.
change juce_core/system/juce_TargetPlatform.h '#ifdef __MINGW32__' '#if defined (__MINGW32__) && ! defined (JUCE_64BIT)'
# Of an object only Microsoft's compiler can tell the interface.
change juce_graphics/native/juce_Direct2DResources_windows.cpp '__uuidof (device)' '__uuidof (IDXGIDevice)'
change juce_graphics/native/juce_Direct2DResources_windows.cpp '__uuidof (surface)' '__uuidof (IDXGISurface)'
# Wine does not wait for the screen: the thread would spin.
change juce_gui_basics/native/juce_VBlank_windows.cpp 'if (output->WaitForVBlank() == S_OK)' 'if (output->WaitForVBlank() == S_OK || (sleep (16), true))'
# Wine shows nothing of a composed swap chain: the software renderer is preselected.
change juce_gui_basics/native/juce_Windowing_windows.cpp '(HWND) parentHWND, false, 1 };' '(HWND) parentHWND, false, 0 };'

echo "$layout" > "$target/.complete"
