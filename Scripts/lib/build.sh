# shellcheck shell=bash
# Sourced by the scripts: sets root, and offers the steps that they share.

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)

# One cache for all clones: paths count from the root. What was not found in it is compiled without a run of the
# preprocessor before, and precompiled headers are cached as well.
export CCACHE_BASEDIR=$root CCACHE_NOHASHDIR=1 CCACHE_DEPEND=1 CCACHE_SLOPPINESS=pch_defines,time_macros

# Joined by &&, since errexit does not reach into a function whose result the caller tests.

# build PRESET [TARGET...]: builds the preset's own targets when none is named.
build()
{
    local preset=$1 progress=()
    shift
    if [[ ! -t 1 ]]; then
        progress=(--quiet)
        echo "Building ($preset), the first time for some minutes" >&2
    fi
    if [[ ! -w $root ]]; then
        echo "$root belongs to somebody else; clone it again into a folder of yours." >&2
        return 1
    fi
    # A configure step that found no compiler leaves a folder that cannot be mended.
    local folder=$root/build/$preset
    [[ ! -e $folder/CMakeCache.txt || -e $folder/build.ninja ]] || rm -rf "$folder"
    local needed=()
    case $preset in
        package) needed=(--build) ;;
        asan | fuzz) needed=(clang-16 libclang-rt-16-dev llvm-16) ;; # the last for the names in their reports
    esac
    "$root/Scripts/install-dependencies" "${needed[@]}" && (
        cd "$root" &&
            cmake --preset "$preset" >/dev/null &&
            cmake --build --preset "$preset" --parallel "$(nproc)" ${1:+--target "$@"} -- "${progress[@]}"
    )
}

# build_and_test PRESET [CTEST-ARGUMENT...]
build_and_test()
{
    build "$1" && (cd "$root" && ctest --preset "$@")
}
