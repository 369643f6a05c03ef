#!/usr/bin/env bash
# Every combination of the build's options, and all build types with both compilers.
set -euo pipefail
cd "$(dirname "$0")/../.."
. scripts/install-packages.sh
install_packages packages.txt packages-test.txt packages-lint.txt packages-desktop.txt

root=$PWD/build/builds
log=$root/log
mkdir -p "$root"
passed=0
failed=0

# check NAME COMMAND...: what the command says is shown when it fails.
check() {
    local name=$1 before=$SECONDS
    shift
    if "$@" >"$log" 2>&1; then
        passed=$((passed + 1))
        printf '%4ds  %s\n' $((SECONDS - before)) "$name"
    else
        failed=$((failed + 1))
        echo "FAILED: $name"
        cat "$log"
    fi
}

# build FOLDER OPTION...: what earlier combinations compiled in the folder is not compiled again. A
# library that is linked but no target of this combination is told when it is configured. What stands
# on Qt is built where an option says so.
build() {
    local folder=$root/$1
    shift
    cmake -S . -B "$folder" -G Ninja -DMARLUNE_WERROR=ON -DCMAKE_LINK_LIBRARIES_ONLY_TARGETS=ON \
        -DCMAKE_UNITY_BUILD=ON -DCMAKE_UNITY_BUILD_BATCH_SIZE=0 -DMARLUNE_QT=OFF "$@" &&
        cmake --build "$folder"
}

# combinations FOLDER OPTION... -- NAME...: builds every choice of the options MARLUNE_NAME.
combinations() {
    local folder=$1 fixed=() choice bit options words
    shift
    while [ "$1" != "--" ]; do
        fixed+=("$1")
        shift
    done
    shift
    for ((choice = 0; choice < 1 << $#; ++choice)); do
        options=()
        words=""
        for ((bit = 0; bit < $#; ++bit)); do
            local name=${*:bit+1:1} value=OFF
            if (((choice >> bit) & 1)); then
                value=ON
                words+=" $name"
            fi
            options+=("-DMARLUNE_$name=$value")
        done
        check "$folder:${words:- the library alone}" build "$folder" "${fixed[@]}" "${options[@]}"
    done
}

gcc=(-DCMAKE_CXX_COMPILER=g++ -DCMAKE_BUILD_TYPE=Debug)
clang=(-DCMAKE_CXX_COMPILER=clang++ -DCMAKE_BUILD_TYPE=Debug)
combinations options "${gcc[@]}" -- PROGRAMS RECEIVER TESTS BENCH
combinations shared "${gcc[@]}" -DBUILD_SHARED_LIBS=ON -- PROGRAMS RECEIVER
# What the library offers is kept: who takes a name away, or adds one unawares, is told here. After a
# wanted change: nm -D --defined-only LIBRARY | awk '{ print $3 }' | LC_ALL=C sort >src/marlune.symbols
same_symbols() {
    diff src/marlune.symbols \
        <(nm -D --defined-only "$root/shared/src/libmarlune.so.1" | awk '{ print $3 }' | LC_ALL=C sort)
}
check "shared: the exported symbols" same_symbols
# Their flags reach every file. All of them together are what ./test builds.
combinations sanitized "${clang[@]}" -DMARLUNE_SANITIZE=ON -- PROGRAMS
combinations fuzzed "${clang[@]}" -DMARLUNE_FUZZ=ON -- RECEIVER

for compiler in g++ clang++; do
    for type in Debug Release RelWithDebInfo MinSizeRel; do
        check "$compiler, $type" build "$compiler-$type" \
            -DCMAKE_CXX_COMPILER=$compiler -DCMAKE_BUILD_TYPE=$type
    done
done

for shared in OFF ON; do
    for compiler in g++ clang++; do
        check "Qt, BUILD_SHARED_LIBS=$shared, $compiler" build "qt-$shared-$compiler" \
            -DCMAKE_CXX_COMPILER=$compiler -DBUILD_SHARED_LIBS=$shared -DMARLUNE_QT=ON
    done
done

# As the README has it: file by file, with nothing but what packages.txt brings, and with Qt, which
# is found where it is.
plain() {
    local folder=$root/$1
    shift
    cmake -S . -B "$folder" -DCMAKE_BUILD_TYPE=Release -DMARLUNE_RECEIVER=OFF "$@" &&
        cmake --build "$folder" -j "$(nproc)" && ! grep -i 'warning:' "$log"
}
check "cmake -DCMAKE_BUILD_TYPE=Release" plain plain -DMARLUNE_QT=OFF
check "cmake -DCMAKE_BUILD_TYPE=Release, with Qt" plain plain-qt

# A program of somebody else's, whose compiler may warn: nothing but the library is built.
embedded() {
    cmake -S tests/embedded -B "$root/embedded" -G Ninja -DCMAKE_UNITY_BUILD=ON \
        -DCMAKE_UNITY_BUILD_BATCH_SIZE=0 && cmake --build "$root/embedded"
}
check "add_subdirectory" embedded

echo "$passed passed, $failed failed"
[ "$failed" -eq 0 ]
