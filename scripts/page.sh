#!/bin/sh
# Builds the help page with its try-it box: build/wasm/read-serial-docs.html. With --test, also tests
# it in a browser: scripts/page.sh [--test]
. "$(dirname "$0")/setup.sh"

need_packages cmake emscripten ninja-build nlohmann-json3-dev nodejs

emcmake cmake --preset wasm >/dev/null
cmake --build --preset wasm -- --quiet
echo "build/wasm/read-serial-docs.html"
[ "${1-}" = --test ] || exit 0

need_build_packages
need_packages chromium libgtest-dev locales
command -v npm >/dev/null || need_packages npm  # some packages of Node.js contain it
cmake --preset release >/dev/null
cmake --build --preset release --target native_try sift word_sifter -- --quiet
mkdir -p build/wasm/browser
cp tests/web/package.json build/wasm/browser
npm install --prefix build/wasm/browser --silent --no-audit --no-fund
node tests/web/page_test.mjs build/wasm/read-serial-docs.html build/release/bin \
    "$(command -v chromium)"
