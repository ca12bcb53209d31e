#!/bin/sh
# Makes the packages of a release in build/packages, for Linux and for Windows; makes them again in
# another folder, where they must get the same bytes; and tests them with packaging/test.sh.
. "$(dirname "$0")/setup.sh"

need_build_packages
need_packages g++-mingw-w64-x86-64-posix git dpkg-dev lintian unzip
install_options=--no-install-recommends need_packages wine64

SOURCE_DATE_EPOCH=$(git log -1 --format=%ct)
export SOURCE_DATE_EPOCH TZ=UTC
umask 022

# pack SOURCES PACKAGES: makes the packages of the folder SOURCES in the new folder PACKAGES.
pack() {
    rm -rf "$2"
    mkdir -p "$2"
    "$1/scripts/page.sh" >/dev/null
    for preset in package windows; do
        cd "$1"
        cmake --preset "$preset" -DWORD_SIFTER_TESTS=OFF >/dev/null
        cmake --build --preset "$preset" -- --quiet
        cd "build/$preset"
        cpack -B "$2" >packages.log 2>&1 || {
            cat packages.log >&2
            exit 1
        }
    done
    rm -r "$2/_CPack_Packages"
    cd "$top"
}
top=$PWD
packages=$top/build/packages
second=$top/build/package-second

echo "== packages"
pack "$top" "$packages"

echo "== the same packages from another folder"
rm -rf "$second"
mkdir -p "$second/a-folder-with-another-name"
git ls-files -z --cached --others --exclude-standard |
    xargs -0 cp --parents -t "$second/a-folder-with-another-name"
pack "$second/a-folder-with-another-name" "$second/packages"
for package in "$packages"/*; do
    cmp "$package" "$second/packages/${package##*/}"
done

(cd "$packages" && sha256sum -- * >SHA256SUMS && cat SHA256SUMS)
packaging/test.sh "$packages"
echo "The packages are in build/packages."
