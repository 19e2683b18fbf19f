#!/usr/bin/env bash
# Windows: cross-builds zelt.dll and the test programs with MinGW-w64 (`mingw`
# preset), checks the DLL and runs the tests under Wine.
#   - the export table holds exactly the ZELT_API names of include/zelt/;
#   - the DLL imports only system DLLs (the MinGW runtimes are linked in) and our
#     DllMain is the one linked (it imports DisableThreadLibraryCalls);
#   - every test program passes under Wine (fuzz targets replay their corpus).
# Usage: scripts/mingw.sh
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/ensure-deps.sh g++-mingw-w64-x86-64 wine64 googletest
cmake --preset mingw >/dev/null
cmake --build --preset mingw -j"$(nproc)"
dll=build/mingw/zelt.dll
objdump=x86_64-w64-mingw32-objdump

echo "1. exports of zelt.dll"
declared=$(grep -h '^ZELT_API ' include/zelt/*.h | sed -E 's/^ZELT_API[^(]*[^A-Za-z0-9_]([A-Za-z_][A-Za-z0-9_]*)[ ]*\(.*/\1/' | sort -u)
exported=$("$objdump" -p "$dll" | sed -n '/\[Ordinal\/Name Pointer\] Table/,/^$/p' | sed -n 's/^[[:space:]]*\[ *[0-9]*\] //p' | sort -u)
if [ "$declared" != "$exported" ]; then
  echo "export table differs from the public headers (< declared, > exported):" >&2
  diff <(echo "$declared") <(echo "$exported") >&2 || true
  exit 1
fi
echo "   $(echo "$exported" | wc -l) names, exactly the public ones"

echo "2. imports of zelt.dll"
imports=$("$objdump" -p "$dll" | sed -n 's/^[[:space:]]*DLL Name: //p' | tr 'A-Z' 'a-z' | sort -u)
echo "   $(echo $imports)"
for d in $imports; do
  case "$d" in
    kernel32.dll|msvcrt.dll|ucrtbase.dll|api-ms-win-*) ;;
    *) echo "zelt.dll needs $d at run time; link it statically" >&2; exit 1 ;;
  esac
done
if ! grep -q 'DisableThreadLibraryCalls' <<<"$("$objdump" -p "$dll")"; then
  echo "DisableThreadLibraryCalls is not imported: the library's DllMain was not linked" >&2
  exit 1
fi

echo "3. tests under Wine"
wine=$(command -v wine64 || command -v wine || echo /usr/lib/wine/wine64)
export WINEPREFIX="$PWD/build/mingw/wine" WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml="
[ -d "$WINEPREFIX" ] || "$wine" wineboot -i >/dev/null 2>&1 || true
status=0
while IFS= read -r t; do
  args=()
  case "$t" in *_fuzz.exe) args=(tests/fuzz/corpus/"$(basename "$t" .exe | sed 's/^zelt_//; s/_fuzz$//')") ;; esac
  # Wine may report a crash in a worker thread and still exit with 0: a program
  # passes only with a clean exit, no unhandled exception and (GoogleTest) the
  # summary line.
  if timeout 900 "$wine" "$t" "${args[@]}" >"$t.wine.log" 2>&1 && ! grep -q 'Unhandled' "$t.wine.log" &&
     { [[ "$t" != *_tests.exe ]] || grep -q '^\[  PASSED  \]' "$t.wine.log"; }; then
    echo "   ok   $(basename "$t") ($(grep -Eo '^\[==========\] [0-9]+ tests?' "$t.wine.log" | tail -1 | grep -Eo '[0-9]+ tests?' || tail -1 "$t.wine.log" | tr -d '\r'))"
  else
    status=1
    echo "   FAIL $(basename "$t")" >&2
    tail -30 "$t.wine.log" >&2
  fi
done < <(find build/mingw/tests -type f \( -name 'zelt_*_tests.exe' -o -name 'zelt_*_fuzz.exe' -o -name 'zelt_first_use.exe' \) | sort)
"$(dirname "$wine")/wineserver" -k 2>/dev/null || true
exit $status
