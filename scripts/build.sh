#!/usr/bin/env bash
# build.sh PRESET [TARGET...]: configures once and builds. One compiler cache serves all build folders and checkouts.
set -euo pipefail
cd "$(dirname "$0")/.."
preset="$1"
shift
scripts/setup.sh
export CCACHE_BASEDIR="$PWD" CCACHE_NOHASHDIR=1
export CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime
if [ ! -f "build/$preset/build.ninja" ]; then
  echo "== configuring $preset"
  mkdir -p build
  cmake --preset "$preset" ${HUB_JUCE_DIR:+-DHUB_JUCE_DIR="$HUB_JUCE_DIR"} > "build/configure-$preset.log" 2>&1 || {
    tail -n 40 "build/configure-$preset.log" >&2
    exit 1
  }
fi
echo "== building $preset"
exec cmake --build "build/$preset" ${@:+--target "$@"}
