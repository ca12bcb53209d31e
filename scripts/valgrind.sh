#!/bin/sh
# Runs the tests and the inputs of the fuzzers under valgrind, in a build without sanitizers.
. "$(dirname "$0")/setup.sh"

need_build_packages
need_packages libgtest-dev locales valgrind

# A libstdc++ inside the module would never free its emergency pool, also when unloaded.
cmake -S . -B build/valgrind -G Ninja -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_FLAGS_DEBUG="-O1 -g" \
    -DWORD_SIFTER_STATIC_RUNTIME=OFF >/dev/null
cmake --build build/valgrind -- --quiet

# under_valgrind PROGRAM [ARGUMENT...]
# valgrind doesn't replace allocation functions that the program itself defines.
under_valgrind() {
    program=build/valgrind/bin/$1
    echo "== $1"
    shift
    valgrind --quiet --leak-check=full --errors-for-leak-kinds=definite,indirect,possible \
        --soname-synonyms=somalloc=nouserintercepts --error-exitcode=99 "$program" "$@"
}
for tests in pattern actor allocation plugin; do
    LOCPATH=$PWD/build/valgrind/tests/locales under_valgrind ${tests}_tests --gtest_brief=1
done
for name in engine explain reference shell suggest; do
    under_valgrind replay_$name fuzz/corpus/$name fuzz/regressions/$name
done
