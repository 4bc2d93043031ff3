#!/bin/sh
# Installs the Debian packages that the project needs and that are not there yet.
# Quick when nothing is missing. As root, or through sudo.
set -eu

packages="
build-essential cmake ninja-build ccache
python3 python3-dev libpython3-dev
qtbase5-dev qtbase5-dev-tools
libimath-dev libtbb-dev libfmt-dev libcli11-dev
libgtest-dev libgmock-dev libbenchmark-dev
clang libclang-rt-14-dev
python3-pyside2.qtcore python3-pyside2.qtgui python3-pyside2.qtwidgets
python3-pyside2.qtnetwork python3-pyside2.qttest
fonts-dejavu-core
"

missing=""
for package in $packages; do
    state=$(dpkg-query -W -f '${db:Status-Abbrev}' "$package" 2>/dev/null || true)
    case "$state" in
        ii*) ;;
        *) missing="$missing $package" ;;
    esac
done
[ -n "$missing" ] || exit 0

as_root=""
if [ "$(id -u)" -ne 0 ]; then
    if ! command -v sudo >/dev/null; then
        echo "Missing packages, and neither root nor sudo to install them:$missing" >&2
        exit 1
    fi
    as_root="sudo"
fi
echo "Installing:$missing"
$as_root env DEBIAN_FRONTEND=noninteractive apt-get update
# shellcheck disable=SC2086
$as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y --no-install-recommends $missing
