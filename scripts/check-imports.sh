#!/usr/bin/env bash
# Checks the DLLs a PE file imports: check-imports.sh OBJDUMP FILE REQUIRED... -- ALLOWED...
# Every REQUIRED name must be imported; every import must be REQUIRED, ALLOWED or a system DLL.
# Names compare ignoring case.
set -u
objdump=$1 file=$2; shift 2
required=() allowed=()
while [ $# -gt 0 ] && [ "$1" != "--" ]; do required+=("$1"); shift; done
[ $# -gt 0 ] && shift
allowed=("$@")
system="kernel32.dll user32.dll gdi32.dll gdiplus.dll ole32.dll oleaut32.dll msvcrt.dll comctl32.dll uxtheme.dll imm32.dll shell32.dll advapi32.dll oleacc.dll"
imports=$("$objdump" -p "$file" | sed -n 's/^\s*DLL Name: //p' | tr 'A-Z' 'a-z')
status=0
for name in "${required[@]}"; do
    grep -qx "$(echo "$name" | tr 'A-Z' 'a-z')" <<<"$imports" || { echo "missing import: $name"; status=1; }
done
for name in $imports; do
    ok=0
    for known in $system "${required[@]}" "${allowed[@]}"; do
        [ "$name" = "$(echo "$known" | tr 'A-Z' 'a-z')" ] && ok=1
    done
    [ $ok = 1 ] || { echo "unexpected import: $name"; status=1; }
done
echo "$(basename "$file") imports: $(echo $imports)"
exit $status
