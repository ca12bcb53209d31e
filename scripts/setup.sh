# The other scripts source this file. It changes to the top folder of the checkout and defines
# functions that install missing packages.

set -eu
cd "$(dirname "$0")/.."

# need_packages PACKAGE...: installs the Debian packages that are missing. install_options may hold
# options for apt-get.
need_packages() {
    if ! command -v dpkg-query >/dev/null || ! command -v apt-get >/dev/null; then
        echo "This system isn't Debian (apt-get is missing), so nothing is installed. Please" >&2
        echo "install these packages, or what your system calls them: $*" >&2
        return 0
    fi
    missing=
    for package in "$@"; do
        if [ "$(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null)" != installed ]; then
            missing="$missing $package"
        fi
    done
    [ -n "$missing" ] || return 0
    as_root=
    if [ "$(id -u)" -ne 0 ]; then as_root=sudo; fi
    echo "Installing:$missing" >&2
    # shellcheck disable=SC2086  # one word for each package
    $as_root sh -c 'apt-get update -qq && DEBIAN_FRONTEND=noninteractive apt-get install -y -qq "$@" >/dev/null' \
        sh ${install_options-} $missing
}

need_build_packages() { need_packages g++ cmake ninja-build libcli11-dev nlohmann-json3-dev; }
need_bench_packages() { need_packages libbenchmark-dev libpcre2-dev libre2-dev pkgconf python3; }

# test_sift_of PRESET TESTS COMMAND...: runs the tests of sift, but for those that the regular
# expression TESTS matches, against the sift of another system. COMMAND runs it.
test_sift_of() {
    program=$PWD/build/$1/sift
    excluded=$2
    shift 2
    {
        echo "#!/bin/sh"
        printf 'exec'
        printf " '%s'" "$@"
        # shellcheck disable=SC2016
        echo ' "$@"'
    } >"$program"
    chmod +x "$program"
    cmake --preset release >/dev/null
    cmake --build --preset release --target sift sift_tests -- --quiet
    WORD_SIFTER_SIFT=$program ctest --preset release -j "$(nproc)" --progress \
        -R '^Sift\.' -E "RunsWhereItIsInstalled|NeedsNoNewRuntime|$excluded"
}
