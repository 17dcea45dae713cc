#!/usr/bin/env bash
# Builds the three Debian packages of a build tree with CPack and checks what
# each one holds (dpkg-deb -c) and depends on (dpkg-deb -f).
# Usage: debian_packages.sh <build dir>
set -euo pipefail
build=$(cd "$1" && pwd)
work=$(mktemp -d "${TMPDIR:-/tmp}/smgr-deb.XXXXXX")
trap 'rm -rf "$work"' EXIT
(cd "$work" && cpack -G DEB --config "$build/CPackConfig.cmake" -B "$work" >/dev/null)

status=0
expect() {  # package, then patterns that its file list must match
  local package=$1
  shift
  local deb
  deb=$(find "$work" -maxdepth 1 -name "${package}_*.deb" | head -n 1)
  if [ -z "$deb" ]; then
    echo "FAIL: no package $package" >&2
    status=1
    return
  fi
  local files
  files=$(dpkg-deb -c "$deb" | awk '{ print $6 }')
  for pattern in "$@"; do
    grep -Eq "$pattern" <<<"$files" || { echo "FAIL: $package lacks $pattern" >&2; status=1; }
  done
  echo "$package: $(grep -c -v '/$' <<<"$files") files; Depends: $(dpkg-deb -f "$deb" Depends)"
}
expect libsessmgr1 '/libsessmgr\.so\.1$' '/libsessmgr\.so\.1\.[0-9]+\.[0-9]+$'
expect libsessmgr-dev '/libsessmgr\.so$' '/include/sessmgr_api\.h$' '/include/smgr_protocol\.h$' \
  '/include/sessmgr_families\.h$' '/include/sessmgr/sm_streams\.h$' '/pkgconfig/sessmgr\.pc$' \
  '/cmake/sessmgr/sessmgrConfig\.cmake$' '/cmake/sessmgr/sessmgrConfigVersion\.cmake$'
expect sessmgr-tools '/bin/smgrctl$' '/bin/sessmgrd-sim$' '/bash-completion/completions/smgrctl$' \
  '/man1/smgrctl\.1$' '/man8/sessmgrd-sim\.8$'

# The runtime carries no headers, the tools no library; shlibdeps found libc.
dpkg-deb -c "$(find "$work" -maxdepth 1 -name 'libsessmgr1_*.deb')" | grep -q '\.h$' && { echo "FAIL: headers in libsessmgr1" >&2; status=1; }
dpkg-deb -f "$(find "$work" -maxdepth 1 -name 'libsessmgr1_*.deb')" Depends | grep -q libc6 ||
  { echo "FAIL: libsessmgr1 does not depend on libc6" >&2; status=1; }
dpkg-deb -f "$(find "$work" -maxdepth 1 -name 'sessmgr-tools_*.deb')" Depends | grep -q 'libsessmgr1' ||
  { echo "FAIL: sessmgr-tools does not depend on libsessmgr1" >&2; status=1; }
exit $status
