#!/usr/bin/env bash
# run.sh BUILD_FOLDER: the whole fault matrix, one process a core. Prints the number of points tried and the losses.
set -u
shards="$(nproc)"
out="$(mktemp -d)"
trap 'rm -rf "$out"' EXIT
running=()
for ((i = 0; i < shards; i++)); do
  "$1/tests/faults/hub_fault_matrix" "$i" "$shards" > "$out/$i" 2>&1 &
  running+=($!)
done
rc=0
for pid in "${running[@]}"; do wait "$pid" || rc=1; done
cat "$out"/* | grep -v '^shard: '
totals="$(sed -n 's/^shard: \([0-9]*\) points, \([0-9]*\) losses$/\1 \2/p' "$out"/* | awk '{ p += $1; l += $2; n++ } END { print p + 0, l + 0, n + 0 }')"
read -r points losses ended <<< "$totals"
[ "$ended" = "$shards" ] || rc=1
echo "fault matrix: $points points tried, $losses losses"
echo "$((points - losses)) passed, $losses failed"
exit "$rc"
