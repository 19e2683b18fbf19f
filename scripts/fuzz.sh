#!/usr/bin/env bash
# Builds the libFuzzer targets (clang, `fuzz` preset) and runs each from its
# committed seed corpus for a share of the time budget. New inputs go to
# build/fuzz/corpus-new/<name>, crashes to build/fuzz/artifacts/; any crash fails.
# Usage: scripts/fuzz.sh [total-seconds, default 60]
set -euo pipefail
cd "$(dirname "$0")/.."
budget="${1:-60}"
scripts/ensure-deps.sh clang libclang-rt-14-dev
cmake --preset fuzz >/dev/null
cmake --build --preset fuzz -j"$(nproc)"
# Targets whose exports have not landed yet are not built; run the others.
mapfile -t names < <(find build/fuzz/tests/fuzz -maxdepth 1 -type f -executable -name 'zelt_*_fuzz' \
  | sed 's|.*/zelt_||; s/_fuzz$//' | sort)
per=$(( budget / ${#names[@]} ))
[ "$per" -lt 5 ] && per=5
mkdir -p build/fuzz/artifacts
status=0
for n in "${names[@]}"; do
  new="build/fuzz/corpus-new/$n"
  mkdir -p "$new" "tests/fuzz/corpus/$n"
  log="build/fuzz/$n.log"
  echo "fuzz $n: ${per}s"
  if ! build/fuzz/tests/fuzz/"zelt_${n}_fuzz" -max_total_time="$per" -print_final_stats=1 \
      -artifact_prefix=build/fuzz/artifacts/ "$new" "tests/fuzz/corpus/$n" >"$log" 2>&1; then
    status=1
    grep -E "ERROR|runtime error|SUMMARY|Test unit written" "$log" >&2 || tail -20 "$log" >&2
  fi
  grep -E "^stat::(number_of_executed_units|average_exec_per_sec|new_units_added)" "$log" | sed "s/^/  $n /"
done
exit $status
