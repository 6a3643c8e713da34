#!/usr/bin/env bash
# Installs the build into an empty folder and builds and runs the example against it, as a stranger would: with
# CMake's find_package and with pkg-config. usage: installed_tree.sh SOURCE_FOLDER BUILD_FOLDER
set -euo pipefail
source_folder=$1
build_folder=$2
place=$(mktemp -d)
trap 'rm -rf "$place"' EXIT
prefix=$place/prefix

cmake --install "$build_folder" --prefix "$prefix" >"$place/install.log"

echo "-- the library links only what it may"
library=$(find "$prefix" -name 'libzanfcp.so' -print -quit)
needed=$(readelf -d "$library" | sed -n 's/.*(NEEDED).*\[\(.*\)\]/\1/p')
echo "$needed"
foreign=$(grep -vE '^(libstdc\+\+\.so|libgcc_s\.so|libm\.so|libc\.so|ld-linux|libtamrelmxf\.so)' <<<"$needed" || true)
[ -z "$foreign" ] || { echo "unexpected: $foreign"; exit 1; }

echo "-- CMake package"
mkdir "$place/host"
cp "$source_folder/examples/build_project.cpp" "$place/host/"
cat >"$place/host/CMakeLists.txt" <<'CMAKE'
cmake_minimum_required(VERSION 3.25)
project(host LANGUAGES CXX)
find_package(zanfcp REQUIRED)
add_executable(build_project build_project.cpp)
target_compile_features(build_project PRIVATE cxx_std_20)
target_link_libraries(build_project PRIVATE zanfcp::zanfcp)
CMAKE
cmake -S "$place/host" -B "$place/host/build" -DCMAKE_PREFIX_PATH="$prefix" >"$place/configure.log" 2>&1 ||
    { cat "$place/configure.log"; exit 1; }
cmake --build "$place/host/build"

echo "-- the example makes a valid project"
"$place/host/build/build_project" "$place/show.xml" "$source_folder"/samples/*.mov
grep -q '<name>My show</name>' "$place/show.xml"
"$prefix/bin/zanfcp" validate "$place/show.xml"

echo "-- pkg-config"
export PKG_CONFIG_PATH
PKG_CONFIG_PATH=$(dirname "$(find "$prefix" -name zanfcp.pc -print -quit)")
# shellcheck disable=SC2046
g++ -std=c++20 "$place/host/build_project.cpp" $(pkg-config --cflags --libs zanfcp) \
    -Wl,-rpath,"$(dirname "$library")" -o "$place/build_project"
"$place/build_project" "$place/again.xml" "$source_folder"/samples/*.mov
cmp "$place/show.xml" "$place/again.xml"

echo "-- every installed header stands alone"
(cd "$prefix/include" && find zanfcp -name '*.h') | while read -r header; do
    echo "#include <$header>" | g++ -std=c++20 -fsyntax-only -x c++ $(pkg-config --cflags zanfcp) - ||
        { echo "$header does not stand alone"; exit 1; }
done
