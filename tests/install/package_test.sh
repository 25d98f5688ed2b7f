#!/usr/bin/env bash
# Builds the Debian package from the build tree, checks its control data, unpacks it into a
# temporary root (dpkg -x) and runs vellumar-cli's version and a lookup from there.
#
#   package_test.sh BUILD_DIR
set -euo pipefail
build=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
fail() { echo "package_test: $*" >&2; exit 1; }

cpack --config "$build/CPackConfig.cmake" -G DEB -B "$work/out" > "$work/cpack.log" 2>&1 ||
  { cat "$work/cpack.log"; fail "cpack failed"; }
deb=$(ls "$work"/out/vellumar_*.deb 2> /dev/null | head -1)
[ -n "$deb" ] || { cat "$work/cpack.log"; fail "no vellumar_*.deb made"; }
echo "package: $(basename "$deb"), $(du -k "$deb" | cut -f1) kB"
depends=$(dpkg-deb -f "$deb" Depends)
echo "Depends: $depends"
for dep in libqt6widgets6 libsqlite3-0 xdg-utils; do
  grep -q "$dep" <<< "$depends" || fail "Depends lacks $dep"
done
[ "$(dpkg-deb -f "$deb" Package)" = vellumar ] || fail "the package is not named vellumar"

dpkg -x "$deb" "$work/root"
for f in usr/bin/vellumar usr/bin/vellumar-cli usr/share/vellumar/DXCC.vdb \
         usr/share/vellumar/Help/index.htm usr/share/applications/org.vellumar.Vellumar.desktop; do
  [ -f "$work/root/$f" ] || fail "not in the package: /$f"
done
export VELLUMAR_HOME="$work/home" XDG_CONFIG_HOME="$work/config"
version=$("$work/root/usr/bin/vellumar-cli" version)
echo "version: $version"
[[ $version == Vellumar\ [0-9]* ]] || fail "unexpected version: $version"
lookup=$("$work/root/usr/bin/vellumar-cli" lookup VP2EAA)
echo "$lookup"
grep -q "Anguilla" <<< "$lookup" || fail "VP2EAA is not Anguilla"
echo "package_test: ok"
