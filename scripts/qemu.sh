#!/usr/bin/env bash
# The baseline must stay baseline: builds the `qemu` preset (optimised, as shipped)
# and runs the whole test suite under qemu-x86_64 user emulation with a processor
# model that has AVX but no AVX2. Any AVX2 instruction reached there dies of SIGILL.
#   1. no inline function or template is defined both in a vector object (*_avx2,
#      *_sse41, *_avx512) and in an object of another instruction set (the linker
#      could hand the baseline the vector copy);
#   2. a control run that forces the AVX2 path must die of SIGILL under the model
#      (so the emulator really traps AVX2);
#   3. the level chosen under the model is below 5;
#   4. every test program passes under the model.
# Usage: scripts/qemu.sh [cpu-model, default SandyBridge]
set -euo pipefail
cd "$(dirname "$0")/.."
model="${1:-SandyBridge},-x2apic,-tsc-deadline"
scripts/ensure-deps.sh qemu-user
cmake --preset qemu >/dev/null
cmake --build --preset qemu -j"$(nproc)"
qemu=(qemu-x86_64 -cpu "$model")

echo "1. weak definitions shared between vector and baseline objects"
# The optimised tree, and the debug tree when there is one: at -O0 nothing is
# inlined away, so a hazard that optimisation hides today still shows. Each
# instruction-set group (*_avx2, *_sse41, *_avx512, the rest) must share no weak symbol
# with any other group.
weak() { [ $# -gt 0 ] || return 0; nm --defined-only "$@" 2>/dev/null | awk '$2 ~ /^[WVu]$/ {print $3}' | sort -u; }
group() {  # objects of one group: avx2, sse41 or base
  case "$2" in
    base) find "$1" -name '*.cpp.o' ! -name '*_avx2.cpp.o' ! -name '*_sse41.cpp.o' ! -name '*_avx512.cpp.o' ;;
    *) find "$1" -name "*_$2.cpp.o" ;;
  esac
}
for objs in build/qemu/CMakeFiles/zelt_objects.dir build/debug/CMakeFiles/zelt_objects.dir; do
  [ -d "$objs" ] || continue
  for pair in "avx2 base" "sse41 base" "avx2 sse41" "avx512 base" "avx512 avx2" "avx512 sse41"; do
    set -- $pair
    mapfile -t a < <(group "$objs" "$1")
    mapfile -t b < <(group "$objs" "$2")
    shared=$(comm -12 <(weak "${a[@]}") <(weak "${b[@]}"))
    if [ -n "$shared" ]; then
      echo "$objs: defined both in $1 and $2 objects (the linker keeps one copy for both;" >&2
      echo "give them internal linkage or move them out of the shared header):" >&2
      echo "$shared" | c++filt >&2
      exit 1
    fi
  done
done

echo "2. control: the forced AVX2 path must trap under $model"
rc=$( ( "${qemu[@]}" build/qemu/tests/stress/zelt_first_use --force-avx2 >/dev/null 2>&1; echo $? ) 2>/dev/null )
if [ "$rc" -ne 132 ]; then
  echo "expected SIGILL (132) from the forced AVX2 path, got $rc: the model does not trap AVX2" >&2
  exit 1
fi

echo "3. level chosen under $model"
out=$("${qemu[@]}" build/qemu/tests/stress/zelt_first_use)
echo "   $out"
level=$(sed -n 's/^level \(-\?[0-9]\+\).*/\1/p' <<<"$out")
if [ -z "$level" ] || [ "$level" -ge 5 ]; then
  echo "level must be below 5 on a processor without AVX2" >&2
  exit 1
fi

echo "4. every test program under $model"
status=0
while IFS= read -r t; do
  args=()
  case "$t" in *_fuzz) args=(tests/fuzz/corpus/"$(basename "$t" | sed 's/^zelt_//; s/_fuzz$//')") ;; esac
  if timeout 900 "${qemu[@]}" "$t" "${args[@]}" >"$t.qemu.log" 2>&1; then
    echo "   ok   $(basename "$t") ($(grep -Eo '^\[==========\] [0-9]+ tests?' "$t.qemu.log" | tail -1 | grep -Eo '[0-9]+ tests?' || tail -1 "$t.qemu.log"))"
  else
    status=1
    echo "   FAIL $(basename "$t")" >&2
    tail -30 "$t.qemu.log" >&2
  fi
done < <(find build/qemu/tests -type f -executable \( -name 'zelt_*_tests' -o -name 'zelt_*_fuzz' -o -name 'zelt_first_use' \) | sort)
exit $status
