#!/usr/bin/env bash
# Installs the build into a fresh prefix whose path holds spaces and runs the installed programs
# from there on a fresh data folder: vellumar-cli's version and a lookup in the installed DXCC
# database, and the desktop program (offscreen) up to its main window, which puts the installed
# help pages into the data folder.
#
#   install_tree_test.sh BUILD_DIR
set -euo pipefail
build=$1
work=$(mktemp -d)
trap 'kill "${pid:-}" 2> /dev/null || true; rm -rf "$work"' EXIT
prefix="$work/ham radio/usr local"
fail() { echo "install_tree_test: $*" >&2; exit 1; }

cmake --install "$build" --prefix "$prefix" > "$work/install.log" || { cat "$work/install.log"; fail "install failed"; }
for f in bin/vellumar bin/vellumar-cli \
         share/vellumar/DXCC.vdb share/vellumar/DXCC.vdb.lookup share/vellumar/Bands.txt \
         share/vellumar/Help/Log.htm share/vellumar/Help/style.css \
         share/applications/org.vellumar.Vellumar.desktop \
         share/metainfo/org.vellumar.Vellumar.metainfo.xml \
         share/icons/hicolor/scalable/apps/org.vellumar.Vellumar.svg; do
  [ -f "$prefix/$f" ] || fail "not installed: $f"
done
# Nothing of the build tree is needed: the installed programs find their data from their place.
export VELLUMAR_HOME="$work/home dir/vellumar" XDG_CONFIG_HOME="$work/config dir"
mkdir -p "$XDG_CONFIG_HOME/vellumar"

version=$(cd / && "$prefix/bin/vellumar-cli" version)
echo "version: $version"
[[ $version == Vellumar\ [0-9]* ]] || fail "unexpected version: $version"
lookup=$(cd / && "$prefix/bin/vellumar-cli" lookup 3D2ABC/C K1ABC)
echo "$lookup"
grep -q "Conway Reef" <<< "$lookup" || fail "3D2ABC/C is not Conway Reef"
grep -q "United States" <<< "$lookup" || fail "K1ABC is not the United States"
[ -f "$VELLUMAR_HOME/Databases/DXCC.vdb" ] || fail "DXCC.vdb was not copied into the data folder"

# The desktop program, from the installed tree, up to its windows.
cat > "$XDG_CONFIG_HOME/vellumar/Vellumar.ini" << 'INI'
[Configuration]
Callsign=K1ABC
[RAC]
RACEnabled=0
INI
QT_QPA_PLATFORM=offscreen VELLUMAR_WIDGET_MAP="$work/widgets" "$prefix/bin/vellumar" \
  > "$work/program.log" 2>&1 &
pid=$!
for _ in $(seq 300); do
  [ -s "$work/widgets" ] && break
  kill -0 "$pid" 2> /dev/null || { cat "$work/program.log" >&2; fail "vellumar ended"; }
  sleep 0.1
done
[ -s "$work/widgets" ] || fail "vellumar showed no window within 30 s"
kill -TERM "$pid"; wait "$pid" 2> /dev/null || true
for page in Log.htm Configuration.htm style.css; do
  cmp -s "$prefix/share/vellumar/Help/$page" "$VELLUMAR_HOME/Help/$page" ||
    fail "Help/$page was not copied into the data folder"
done
[ -f "$VELLUMAR_HOME/Databases/K1ABC.vdb" ] || fail "the log was not created"
echo "install_tree_test: ok"
