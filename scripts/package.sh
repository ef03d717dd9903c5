#!/usr/bin/env bash
# package.sh [debian|windows]: builds the package of the release build (Debian's by default) in build/packages.
# Standard output is its path alone.
set -euo pipefail
cd "$(dirname "$0")/.."

case "${1:-debian}" in
  debian)  preset=release ending=.deb ;;
  windows) preset=windows-release ending=.exe ;;
  *)       sed -n '2,3s/^# //p' "$0" >&2; exit 2 ;;
esac

if [ "$preset" = windows-release ]; then
  scripts/setup-windows.sh >&2
  unset HUB_JUCE_DIR    # the cross build has a JUCE of its own
fi
scripts/build.sh "$preset" ZorvaHub >&2
[ -f "build/$preset/CPackConfig.cmake" ] || cmake "build/$preset" > /dev/null    # configured before there were packages
echo "== packing ($preset)" >&2
mkdir -p build/packages
umask 022    # the modes of the folders in the package
rm -f build/packages/*"$ending"
cpack --config "build/$preset/CPackConfig.cmake" -B "$PWD/build/packages" > "build/pack-$preset.log" 2>&1 || {
  tail -n 40 "build/pack-$preset.log" >&2
  exit 1
}
rm -rf build/packages/_CPack_Packages
ls "$PWD"/build/packages/*"$ending"
