#!/usr/bin/env bash
# Valgrind memcheck over a reduced run of the debug build: every GoogleTest program
# except the concurrency programs (threads crawl under valgrind; the thread
# sanitizer covers them), plus the fuzz corpus replay.
# Any error or leak fails. Set ZELT_VALGRIND_FILTER to narrow the GoogleTest cases.
# Usage: scripts/valgrind.sh
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/ensure-deps.sh valgrind
cmake --preset debug >/dev/null
cmake --build --preset debug -j"$(nproc)"
vg=(valgrind --tool=memcheck --error-exitcode=99 --leak-check=full --errors-for-leak-kinds=definite,indirect
    --track-origins=yes --quiet)
filter="${ZELT_VALGRIND_FILTER:-*}"
status=0
while IFS= read -r t; do
  name=$(basename "$t")
  args=()
  case "$name" in
    zelt_stress_tests|zelt_first_use) continue ;;
    *_fuzz) args=(tests/fuzz/corpus/"$(sed 's/^zelt_//; s/_fuzz$//' <<<"$name")") ;;
    *_tests) args=(--gtest_filter="$filter") ;;
  esac
  start=$SECONDS
  if "${vg[@]}" "$t" "${args[@]}" >"$t.valgrind.log" 2>&1; then
    echo "   ok   $name ($((SECONDS - start))s)"
  else
    status=1
    echo "   FAIL $name" >&2
    grep -E '^==[0-9]+==' "$t.valgrind.log" | head -40 >&2 || tail -30 "$t.valgrind.log" >&2
  fi
done < <(find build/debug/tests -type f -executable \( -name 'zelt_*_tests' -o -name 'zelt_*_fuzz' -o -name 'zelt_first_use' \) | sort)
exit $status
