#!/usr/bin/env bash
# Installs the build at BUILD_DIR into a temporary root and checks that exactly the programs, the
# desktop entry, the metainfo and the icons land where a desktop looks for them, and that the
# desktop's own validators accept them.
#
#   check_installed_files.sh BUILD_DIR
set -euo pipefail

build=$1
root=$(mktemp -d)
trap 'rm -rf "$root"' EXIT
DESTDIR=$root cmake --install "$build" --prefix /usr >/dev/null

id=org.tallowmere.Tallowmere
sizes=(16 32 48 64 128 256 512)
expected=(
  usr/bin/tallowmere
  usr/bin/tallowmere-cli
  "usr/share/applications/$id.desktop"
  "usr/share/metainfo/$id.metainfo.xml"
  "usr/share/icons/hicolor/scalable/apps/$id.svg"
)
for size in "${sizes[@]}"; do
  expected+=("usr/share/icons/hicolor/${size}x${size}/apps/$id.png")
done

installed=$(cd "$root" && find . -type f -printf '%P\n' | sort)
wanted=$(printf '%s\n' "${expected[@]}" | sort)
if [ "$installed" != "$wanted" ]; then
  echo "installed files differ from the expected ones:" >&2
  diff <(echo "$wanted") <(echo "$installed") >&2 || true
  exit 1
fi

desktop-file-validate "$root/usr/share/applications/$id.desktop"
appstreamcli validate --no-net "$root/usr/share/metainfo/$id.metainfo.xml" >/dev/null

entry=$root/usr/share/applications/$id.desktop
grep -qx "Icon=$id" "$entry" || { echo "the desktop entry names another icon" >&2; exit 1; }
grep -qx "Exec=tallowmere" "$entry" || { echo "the desktop entry starts another program" >&2; exit 1; }
grep -qx "Comment=Find and clear the storage your AI tools keep" "$entry" ||
  { echo "the desktop entry's comment changed" >&2; exit 1; }

for size in "${sizes[@]}"; do
  icon=$root/usr/share/icons/hicolor/${size}x${size}/apps/$id.png
  actual=$(identify -format '%wx%h' "$icon")
  [ "$actual" = "${size}x${size}" ] || { echo "$icon is $actual" >&2; exit 1; }
done

"$root/usr/bin/tallowmere-cli" --help >/dev/null
echo "installed files: ${#expected[@]}, all in place and valid"
