# SPDX-License-Identifier: MIT
# Common functions of the scripts in this directory, which source it.

here=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
consumer=$here/tests/install/consumer
version=$(sed -n 's/^#define QORTK_VERSION_[A-Z]* \([0-9]*\)$/\1/p' "$here/include/qor/Version.h" | paste -sd.)
major=${version%%.*}
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

# use_by_cmake NAME ARGUMENT... builds the program against the library and runs it.
use_by_cmake() {
    cmake -S "$consumer" -B "$folder/$1" "${@:2}"
    cmake --build "$folder/$1" --parallel "$(nproc)"
    [ "$("$folder/$1/consumer")" = "$version" ]
}

# use_by_pkg_config FOLDER does so too, with the library's folder for the program to look in.
use_by_pkg_config() {
    [ "$(pkg-config --modversion qortk)" = "$version" ]
    # shellcheck disable=SC2046 # the flags are words
    c++ -std=c++17 "$consumer/main.cpp" $(pkg-config --cflags --libs qortk) -o "$folder/by-pkg-config"
    [ "$(LD_LIBRARY_PATH=$1 "$folder/by-pkg-config")" = "$version" ]
}

# development_files LIBDIR LIBRARY lists the files that programs are compiled with.
development_files() {
    (cd "$here" && find include -name '*.h')
    printf "$1/%s\n" "$2" pkgconfig/qortk.pc cmake/qortk/qortk{Config,ConfigVersion,Targets,Targets-release}.cmake
}

runtime_files() {
    printf "$1/%s\n" "libqortk.so.$major" "libqortk.so.$version"
}

# same_files compares the list on standard input with the list in $1.
same_files() {
    diff <(sort) <(sort <<<"$1")
}
