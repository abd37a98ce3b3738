#!/bin/sh
# The engine, installed by itself, serves a program that knows nothing else of this tree.
# usage: engine_package_test.sh SOURCE BUILD FLAGS
set -eu
source=$1
build=$2
flags=$3
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

cmake --install "$build" --component velmora_agent --prefix "$work/installed" >"$work/log"
cp -r "$source/agent/example" "$work/example"
cat >"$work/example/hears.cpp" <<'END'
#include "agent/hearing/ear.h"

int main() {
    agent::Ear ear({.post = [](const std::function<void()>& step) { step(); }});
    ear.stop();
}
END
cat >>"$work/example/CMakeLists.txt" <<'END'
add_executable(hears hears.cpp)
target_link_libraries(hears PRIVATE VelmoraAgent::hearing)
END
cmake -G Ninja -S "$work/example" -B "$work/built" -DCMAKE_PREFIX_PATH="$work/installed" \
    -DCMAKE_CXX_FLAGS="$flags" >"$work/log" || { cat "$work/log"; exit 1; }
cmake --build "$work/built" >"$work/log" || { cat "$work/log"; exit 1; }

export HOME="$work" QT_QPA_PLATFORM=offscreen
# A companion that lives here only would be found missing by the linker, and a package by this.
timeout 60 "$work/built/greeter" "$source/data/characters" Merlin "Hi." 2>"$work/said" || { cat "$work/said"; exit 1; }
"$work/built/hears"
if "$work/built/greeter" "$source/data/characters" Nobody "Hi." 2>"$work/said"; then
    echo "greeter found a character that is not there"
    exit 1
fi
grep -q Nobody "$work/said"
