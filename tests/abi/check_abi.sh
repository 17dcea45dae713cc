#!/usr/bin/env bash
# Compares libsessmgr.so with the committed ABI baseline (abi/libsessmgr.so.1.abi,
# made by scripts/abi-baseline) and fails on any change that breaks existing
# clients: a removed or changed function or variable, or a changed record that
# a function uses. Added functions are reported and allowed.
# Usage: check_abi.sh <libsessmgr.so> <baseline.abi> <public include dir> <generated include dir>
set -uo pipefail
lib=$1 baseline=$2 include=$3 generated=$4
if ! command -v abidiff >/dev/null; then
  echo "abidiff is missing (Debian package abigail-tools; scripts/setup-deps installs it)" >&2
  exit 1
fi
report=$(abidiff --headers-dir2 "$include" --headers-dir2 "$generated" "$baseline" "$lib")
rc=$?
summary=$(grep -E '^(Functions|Variables) changes summary' <<<"$report")
echo "${summary:-no ABI change}"
# abidiff's exit status: bit 1 error, bit 2 usage, bit 4 ABI change, bit 8 incompatible change.
if ((rc & 3)); then
  echo "$report" >&2
  echo "FAIL: abidiff could not compare (exit $rc)" >&2
  exit 1
fi
if ((rc & 8)) || grep -Eq 'summary: [1-9][0-9]* Removed|[1-9][0-9]* Changed' <<<"$summary"; then
  echo "$report" >&2
  echo "FAIL: the change breaks the ABI of libsessmgr.so.1 (refresh the baseline only with a new SONAME)" >&2
  exit 1
fi
exit 0
