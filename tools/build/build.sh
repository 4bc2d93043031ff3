#!/bin/sh
# tools/build/build.sh PRESET: configures and builds build/PRESET, with ninja's progress.
set -eu
cd "$(dirname "$0")/../.."
preset=$1

export NINJA_STATUS="[$preset %f/%t %es] "
if [ ! -f "build/$preset/build.ninja" ]; then
    cmake --preset "$preset"
fi
cmake --build --preset "$preset"
