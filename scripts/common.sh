# shellcheck shell=bash
# What the scripts share. Sourced; sets `root`, the folder of the sources.

root=$(cd "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")/.." && pwd)

cores() {
    nproc 2>/dev/null || getconf _NPROCESSORS_ONLN
}

on_macos() {
    [[ $(uname) == Darwin ]]
}

# configure PRESET: what is installed by now is looked for again. Otherwise ninja repeats it whenever it has to.
# TMPDIR is left to the program that is run afterwards: it may name a folder made for a demonstration.
configure() {
    # Homebrew's libraries have presets of their own, which build in the same folder.
    if on_macos && [[ $1 == release || $1 == dev ]]; then
        (cd "$root" && cmake --preset "macos-$1")
    else
        (cd "$root" && env -u TMPDIR cmake --preset "$1")
    fi
}

# What has been compiled before is not compiled again where ccache is installed, in whichever clone it was. Not where the
# compiler leaves notes that name the sources' folder.
if command -v ccache >/dev/null; then
    export CCACHE_BASEDIR=$root CCACHE_NOHASHDIR=1
    export CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime
    export CMAKE_CXX_COMPILER_LAUNCHER=ccache
fi

# build PRESET [TARGET...]: says nothing when nothing is to be done.
build() {
    local preset=$1 targets=()
    shift
    if (($# > 0)); then
        targets=(--target "$@")
    fi
    if [[ ! -f "$root/build/$preset/build.ninja" ]]; then
        configure "$preset"
    fi
    env -u TMPDIR cmake --build "$root/build/$preset" --parallel "$(cores)" ${targets[@]+"${targets[@]}"} |
        sed -u '/^ninja: no work to do\.$/d'
}

# run_tests PRESET [CTEST ARGUMENTS]: in memory where there is enough of it, for a disk may take a millisecond for each
# folder that is removed, and the tests remove some hundred thousand. What is about disks and volumes stays on one.
run_tests() {
    local preset=$1 memory=/dev/shm least_kib=$((6 * 1024 * 1024)) disks='TrashPlaces|DeadMounts|Swaps|EmptyTrash|WholeApp'
    local free tests status=0
    shift
    tests=(ctest --preset "$preset" --parallel "$(cores)" --no-tests=error)
    free=$(df -k --output=avail "$memory" 2>/dev/null | tail -n 1 || true)
    if (($# > 0 || ${free:-0} < least_kib)); then
        (cd "$root" && "${tests[@]}" "$@")
        return
    fi
    memory=$(mktemp -d "$memory/ulvak-tests.XXXXXX")
    chmod 711 "$memory"  # some tests become another user
    (cd "$root" && TMPDIR=$memory "${tests[@]}" --exclude-regex "$disks") || status=$?
    rm -rf -- "$memory"
    (cd "$root" && "${tests[@]}" --tests-regex "$disks") || status=$?
    return "$status"
}

# source_files PATTERN...: tracked files and new ones that are not ignored, each ending in a zero byte.
source_files() {
    local file
    # Also where the sources are another user's, as in a container that has them mounted.
    git -c safe.directory='*' -C "$root" ls-files -z --cached --others --exclude-standard -- "$@" |
        while IFS= read -r -d '' file; do
            if [[ -f "$root/$file" ]]; then
                printf '%s\0' "$file"
            fi
        done
}

# make_debian_13 FOLDER PACKAGE...: a Debian 13 with these packages, from where this machine's apt gets its own, by
# way of the same proxy. There is all of it or none. Takes root and debootstrap.
make_debian_13() {
    local folder=$1 packages=("${@:2}") mirror proxy=
    # shellcheck disable=SC2016 # apt's own
    mirror=$(apt-get indextargets --format '$(REPO_URI)' 'Origin: Debian' 'Label: Debian' 'Created-By: Packages' 2>/dev/null |
        head -n 1 || true)
    eval "$(apt-config shell proxy Acquire::http::Proxy 2>/dev/null || true)"
    rm -rf -- "$folder.new"
    mkdir -p "$folder.new"
    # In a namespace of its own, so that what is mounted meanwhile goes whatever happens.
    # shellcheck disable=SC2086 # no mirror is no argument
    env ${proxy:+http_proxy="$proxy"} unshare --mount debootstrap --variant=minbase \
        ${packages[0]:+--include="$(IFS=,; echo "${packages[*]}")"} trixie "$folder.new" $mirror >&2
    rm -rf -- "$folder"
    mv "$folder.new" "$folder"
}
