#!/usr/bin/env bash
# fuzz.sh SECONDS: runs every fuzz target of build/asan for so long, starting from its corpus. New inputs stay in build/.
set -euo pipefail
cd "$(dirname "$0")/.."
passed=0
failed=0

# A target that found a way out of its directory must not reach the machine: all but the folder of findings is read-only.
confined() {
  unshare -Urm sh -c 'mount --make-rprivate / && mount --bind "$1" "$1" && mount -o remount,bind,ro / && shift && exec "$@"' \
    sh "$PWD/build/fuzz-found" "$@"
}
for target in build/asan/tests/fuzz/fuzz_*; do
  [ -x "$target" ] && [ -f "$target" ] || continue
  name="$(basename "$target")"
  found="$PWD/build/fuzz-found/$name"
  mkdir -p "$found"
  if confined "$target" -max_total_time="$1" -rss_limit_mb=4096 -timeout=20 -print_final_stats=1 -verbosity=1 \
       -artifact_prefix="$found/crash-" "$found" "tests/fuzz/corpus/${name#fuzz_}" > "build/$name.log" 2>&1; then
    passed=$((passed + 1))
    echo "clean: $name, $(sed -n 's/^stat::number_of_executed_units: *//p' "build/$name.log") inputs in $1 s"
  else
    failed=$((failed + 1))
    echo "FAILED: $name"
    tail -n 40 "build/$name.log"
  fi
done
echo "$passed passed, $failed failed"
[ "$failed" = 0 ] && [ "$passed" -gt 0 ]
