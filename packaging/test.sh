#!/bin/sh
# Tests the packages in FOLDER: what they contain, that it is hardened, that it runs where nothing
# else is, and that nothing is left when it is removed. Usage: packaging/test.sh FOLDER
# scripts/package.sh calls it.
set -eu
top=$(cd "$(dirname "$0")/.." && pwd)
cd "$1"
scratch=$top/build/package-test
examples=$top/examples
pattern=$(cat "$examples/sensor.pattern")
rm -rf "$scratch"
mkdir -p "$scratch/a folder"

fail() {
    echo "$*" >&2
    exit 1
}

# check_files FOLDER: stops unless the folder has what is in every package.
check_files() {
    for file in word-sifter/read-serial-docs.html libword_sifter_pattern.a \
        cmake/WordSifter/WordSifterConfig.cmake pkgconfig/word-sifter-pattern.pc \
        Pattern/pattern.h word-sifter/CHANGELOG.md word-sifter/copyright word-sifter/install.md; do
        found=$(find "$1" -path "*/$file")
        [ -n "$found" ] || fail "$1 has no $file"
    done
    find "$1" -name read-serial-docs.html -exec grep -q WebAssembly {} + || fail "$1 has no try-it box"
}

# check_run COMMAND...: stops unless the command, over the sample messages, prints their result.
check_run() {
    "$@" "$pattern" <"$examples/sensor.input" | cmp - "$examples/sensor.output"
}

# check_needs OBJDUMP FILE READER: stops if the program or module isn't hardened, or needs a library
# that isn't on every system. READER is a definition for check_hardening.cmake.
check_needs() {
    cmake "-D$3" "-DFILE=$2" -P "$top/packaging/check_hardening.cmake"
    cmake "-DOBJDUMP=$1" "-DFILE=$2" -P "$top/tests/plugin/check_runtime.cmake"
}

echo "== checksums"
sha256sum --quiet -c SHA256SUMS

for archive in *.tar.gz; do
    echo "== $archive"
    tar -xzf "$archive" -C "$scratch/a folder"
    unpacked="$scratch/a folder/${archive%.tar.gz}"
    check_files "$unpacked"
    for file in share/man/man1/sift.1 share/bash-completion/completions/sift; do
        [ -f "$unpacked/$file" ] || fail "$archive has no $file"
    done
    check_run "$unpacked/bin/sift"
    module=$(find "$unpacked" -name 'Word Sifter.so')
    cmake -DOBJDUMP=objdump "-DMODULE=$module" -P "$top/tests/plugin/check_exports.cmake"
    for file in "$unpacked/bin/sift" "$module"; do
        check_needs objdump "$file" READELF=readelf
        glibc=$(objdump -T "$file" | grep -o 'GLIBC_[0-9.]*' | sort -Vu | tail -n 1)
        echo "${file##*/} asks for glibc ${glibc#GLIBC_}"
    done

    # A program outside the tree uses the engine of the package.
    cmake -S "$top/tests/consumer" -B "$scratch/consumer" -G Ninja \
        "-DCMAKE_PREFIX_PATH=$unpacked" >/dev/null
    cmake --build "$scratch/consumer" -- --quiet
    "$scratch/consumer/consumer" | cmp - "$top/tests/consumer/expected_output.txt"
done

for archive in *.zip; do
    echo "== $archive"
    unzip -q "$archive" -d "$scratch/a folder"
    unpacked="$scratch/a folder/${archive%.zip}"
    check_files "$unpacked"
    module="$unpacked/lib/word-sifter/Word Sifter.dll"
    objdump=x86_64-w64-mingw32-objdump
    cmake "-DOBJDUMP=$objdump" "-DMODULE=$module" -P "$top/tests/plugin/check_exports.cmake"
    for file in "$unpacked/bin/sift.exe" "$module"; do
        check_needs "$objdump" "$file" "OBJDUMP=$objdump"
    done
    check_run "$top/scripts/wine.sh" "$unpacked/bin/sift.exe"
done

# as_root COMMAND...
as_root() {
    if [ "$(id -u)" -eq 0 ]; then "$@"; else sudo "$@"; fi
}

# files_of ROOT: lists all files but the database of dpkg.
files_of() { (cd "$1" && find . -path ./var/lib/dpkg -prune -o -print | sort); }

for deb in *.deb; do
    echo "== $deb"
    # Of its mere information, the help page must be next to the plug-in, the sections .comment name
    # the compiler, and the misspelled words are parts of messages about misspelled words.
    lintian --allow-root --fail-on error,warning "$deb"

    # A root with nothing but the libraries that the package depends on.
    root=$scratch/root
    mkdir -p "$root/var/lib/dpkg/updates" "$root/var/lib/dpkg/info" "$root/lib64"
    for file in status available; do : >"$root/var/lib/dpkg/$file"; done
    ldd "$unpacked/../"*Linux*/bin/sift | grep -o '/[^ ]*' | while read -r library; do
        cp -L --parents "$library" "$root"
    done
    files_of "$root" >"$scratch/before"
    # The dependencies are there, but not as packages.
    dpkg="as_root dpkg --root=$root --force-depends --log=$scratch/dpkg.log"
    $dpkg --install "$deb" >"$scratch/install.log" 2>&1 || fail "$(cat "$scratch/install.log")"
    check_files "$root/usr"
    check_run as_root chroot "$root" /usr/bin/sift
    $dpkg --purge word-sifter >"$scratch/remove.log" 2>&1 || fail "$(cat "$scratch/remove.log")"
    files_of "$root" | diff "$scratch/before" - || fail "$deb leaves these files"
done
echo "All packages passed."
