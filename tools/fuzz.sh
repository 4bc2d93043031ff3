#!/bin/sh
# tools/fuzz.sh SECONDS|HOURSh [NAME ...]
# Runs the fuzzers (all, or those named) for so long each, as many at a time as there are cores, and
# keeps the inputs that reach new code in build/fuzz/corpus. What crashes, hangs or breaks a property
# is kept in build/fuzz/found. Leaves with 1 when anything was found.
set -eu
cd "$(dirname "$0")/.."

case "${1:-}" in
    [0-9]*h) time=$((${1%h} * 3600)) ;;
    [0-9]*) time=$1 ;;
    *)
        echo "usage: tools/fuzz.sh SECONDS|HOURSh [NAME ...]" >&2
        exit 2
        ;;
esac
shift

tools/build/build.sh fuzz
programs=build/fuzz/tests/fuzz
names=${*:-$(cd "$programs" && ls -d ./*_fuzz | sed 's|^\./||; s|_fuzz$||')}
mkdir -p build/fuzz/found
export QT_QPA_PLATFORM=offscreen
export ASAN_OPTIONS=detect_leaks=1:allocator_may_return_null=1:max_allocation_size_mb=3000
export LSAN_OPTIONS="suppressions=$PWD/tests/fuzz/leaks.txt:print_suppressions=0"
export UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1

one() {
    words=""
    [ -f "tests/fuzz/dictionaries/$1.dict" ] && words="-dict=tests/fuzz/dictionaries/$1.dict"
    mkdir -p "build/fuzz/corpus/$1"
    # shellcheck disable=SC2086
    if "$programs/$1_fuzz" -max_total_time="$time" $words -timeout=20 -rss_limit_mb=4096 \
        -max_len=8192 -artifact_prefix="build/fuzz/found/$1-" \
        "build/fuzz/corpus/$1" "tests/fuzz/corpus/$1" > "build/fuzz/$1.log" 2>&1; then
        echo "$1: $(grep -aoE 'Done [0-9]+ runs in [0-9]+ second' "build/fuzz/$1.log"), nothing found"
    else
        echo "$1: FOUND, see build/fuzz/$1.log"
        tail -n 30 "build/fuzz/$1.log"
        return 1
    fi
}

failed=0
running=0
for name in $names; do
    one "$name" || touch build/fuzz/found/failed &
    running=$((running + 1))
    if [ "$running" -ge "$(nproc)" ]; then
        wait
        running=0
    fi
done
wait
[ ! -f build/fuzz/found/failed ] || failed=1
rm -f build/fuzz/found/failed
exit "$failed"
