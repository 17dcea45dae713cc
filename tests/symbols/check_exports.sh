#!/bin/sh
# Checks the public surface of libsessmgr.so: every defined dynamic symbol must
# match a name of the export map's global section (the one list of what the
# library exports: no leaked internals or companion services), and the SONAME
# must be libsessmgr.so.1.
# Usage: check_exports.sh <path to libsessmgr.so> <libsessmgr.map> [--sanitized]
# --sanitized: also accept the function-type typeinfo (_ZTIF*, _ZTSF*) that clang's
# UBSan function check emits with default visibility; release builds stay strict.
set -eu
set -f  # the map's names are patterns for case, never file names

lib=${1:?usage: check_exports.sh <libsessmgr.so> <libsessmgr.map> [--sanitized]}
map=${2:?usage: check_exports.sh <libsessmgr.so> <libsessmgr.map> [--sanitized]}
sanitized=${3:-}
[ -f "$lib" ] || { echo "no such library: $lib" >&2; exit 2; }
[ -f "$map" ] || { echo "no such export map: $map" >&2; exit 2; }

# The glob patterns between "global:" and "local:", comments and semicolons dropped.
patterns=$(sed -e 's|/\*.*\*/||g' "$map" | awk '/global:/ { on = 1; next } /local:/ { on = 0 } on' |
  tr -d ' \t;' | grep -v '^$')
[ -n "$patterns" ] || { echo "FAIL: no global names in $map" >&2; exit 2; }

exported() {
  for pattern in $patterns; do
    # shellcheck disable=SC2254 # the map's names are glob patterns
    case "$1" in $pattern) return 0 ;; esac
  done
  return 1
}

status=0

soname=$(readelf -d "$lib" | sed -n 's/.*Library soname: \[\(.*\)\].*/\1/p')
if [ "$soname" != "libsessmgr.so.1" ]; then
  echo "FAIL: SONAME is '$soname', expected 'libsessmgr.so.1'" >&2
  status=1
fi

symbols=$(nm -D --defined-only "$lib" | awk 'NF >= 3 { sub(/@.*/, "", $3); print $3 }' | sort -u)

count=0
for name in $symbols; do
  count=$((count + 1))
  if exported "$name"; then continue; fi
  case "$name" in
    _ZTIF* | _ZTSF*)
      if [ "$sanitized" = "--sanitized" ]; then
        count=$((count - 1))
      else
        echo "FAIL: unexpected exported symbol: $name" >&2
        status=1
      fi
      ;;
    *)
      echo "FAIL: unexpected exported symbol: $name" >&2
      status=1
      ;;
  esac
done

echo "$count exported symbols in $(basename "$lib") (SONAME $soname)"
exit $status
