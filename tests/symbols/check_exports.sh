#!/bin/sh
# Checks the public surface of libsessmgr.so: every defined dynamic symbol must be
# one of the library's exports (no leaked internals or companion services), and
# the SONAME must be libsessmgr.so.1.
# Usage: check_exports.sh <path to libsessmgr.so> [--sanitized]
# --sanitized: also accept the function-type typeinfo (_ZTIF*, _ZTSF*) that clang's
# UBSan function check emits with default visibility; release builds stay strict.
set -eu

lib=${1:?usage: check_exports.sh <libsessmgr.so> [--sanitized]}
sanitized=${2:-}
[ -f "$lib" ] || { echo "no such library: $lib" >&2; exit 2; }

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
  case "$name" in
    SessMgr* | AdaptToPIDChange | __SmgrAPILIB_AutoShutdown | GetObjectSelectorInfoText | CleanupSessMgr* | \
      FixUpInputFileName | FixUpInputFileNameNoPath | GetIPAddressDebugString) ;;
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
