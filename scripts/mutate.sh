#!/bin/sh
# Plants faults in the engine, the explanations, the suggestions and the shell, one at a time, and
# lists those that no test notices.
# Usage: scripts/mutate.sh [--sample N [--seed S]] [--path PREFIX] [--jobs N]
# Without --sample, plants all of them, which takes more than an hour. A sample leaves out the faults
# that have to be compiled by themselves. mutation/equivalent_faults.txt lists the faults that change
# nothing that a user can see. build/mutate/results.txt has a line for each fault.
. "$(dirname "$0")/setup.sh"

need_build_packages
need_packages clang libclang-rt-dev lld python3-clang libgtest-dev locales pkgconf

# python3-clang belongs to the Python of Debian, whichever else is installed.
export PYTHONDONTWRITEBYTECODE=1
exec /usr/bin/python3 mutation/run.py "$@"
