# shellcheck shell=bash
# Shared by the scripts. Sourced; sets `root`, the source folder.

root=$(cd "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")/.." && pwd)

cores() {
    nproc 2>/dev/null || getconf _NPROCESSORS_ONLN
}

on_macos() {
    [[ $(uname) == Darwin ]]
}

# configure PRESET: looks again for newly installed packages. Otherwise ninja reconfigures when needed. TMPDIR
# is reserved for the program run afterwards: it may name a folder made for a demonstration.
configure() {
    # Homebrew's libraries have their own presets, which use the same build folder.
    if on_macos && [[ $1 == release || $1 == dev ]]; then
        (cd "$root" && cmake --preset "macos-$1")
    else
        (cd "$root" && env -u TMPDIR cmake --preset "$1")
    fi
}

# With ccache, nothing is compiled twice, in whichever clone. Not where the compiler writes coverage notes
# that name the source folder.
if command -v ccache >/dev/null; then
    export CCACHE_BASEDIR=$root CCACHE_NOHASHDIR=1
    export CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime
    export CMAKE_CXX_COMPILER_LAUNCHER=ccache
fi

# build PRESET [TARGET...]: silent when there is nothing to do.
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

# run_tests PRESET [CTEST ARGUMENTS]: in memory if there is enough: removing a folder can take a millisecond
# on disk, and the tests remove several hundred thousand. Tests of disks and volumes stay on disk.
run_tests() {
    local preset=$1 memory=/dev/shm least_kib=$((6 * 1024 * 1024)) disks='TrashPlaces|DeadMounts|DemoHome|EmptyTrash|WholeApp'
    local free tests status=0
    shift
    # One more than there are cores: several tests mostly wait.
    tests=(ctest --preset "$preset" --parallel $(($(cores) + 1)) --no-tests=error)
    free=$(df -k --output=avail "$memory" 2>/dev/null | tail -n 1 || true)
    if (($# > 0 || ${free:-0} < least_kib)); then
        (cd "$root" && "${tests[@]}" "$@")
        return
    fi
    memory=$(mktemp -d "$memory/ulvak-tests.XXXXXX")
    chmod 711 "$memory"  # some tests switch to another user
    (cd "$root" && TMPDIR=$memory "${tests[@]}" --exclude-regex "$disks") || status=$?
    rm -rf -- "$memory"
    (cd "$root" && "${tests[@]}" --tests-regex "$disks") || status=$?
    return "$status"
}

# What has passed a check, by fingerprint; what was not asked about for a month is forgotten.
passed=${XDG_CACHE_HOME:-${HOME:-$root/build}/.cache}/ulvak/passed

# fingerprint: of standard input, wherever the checkout is.
fingerprint() {
    sed $'s\x01'"$root"$'\x01\x01g' | sha256sum | cut -d ' ' -f 1
}

# unless_passed FINGERPRINT COMMAND...: the command succeeds as it did with this fingerprint, or is run.
unless_passed() {
    local mark=$passed/$1
    shift
    if [[ -f $mark ]]; then
        touch "$mark"
        return
    fi
    "$@" || return
    mkdir -p "$passed"
    : >"$mark"
    find "$passed" -type f -mtime +30 -delete 2>/dev/null || true  # another run may be faster
}

# source_files PATTERN...: tracked and new, non-ignored files, each NUL-terminated.
source_files() {
    local file
    # Also works if another user owns the sources, as in a container that mounts them.
    git -c safe.directory='*' -C "$root" ls-files -z --cached --others --exclude-standard -- "$@" |
        while IFS= read -r -d '' file; do
            if [[ -f "$root/$file" ]]; then
                printf '%s\0' "$file"
            fi
        done
}

# make_debian_13 FOLDER PACKAGE...: creates a Debian 13 with these packages, from the mirror and proxy of this
# machine's apt. All or nothing. Needs root and debootstrap.
make_debian_13() {
    local folder=$1 packages=("${@:2}") mirror proxy=
    # shellcheck disable=SC2016 # apt's own
    mirror=$(apt-get indextargets --format '$(REPO_URI)' 'Origin: Debian' 'Label: Debian' 'Created-By: Packages' 2>/dev/null |
        head -n 1 || true)
    eval "$(apt-config shell proxy Acquire::http::Proxy 2>/dev/null || true)"
    rm -rf -- "$folder.new"
    mkdir -p "$folder.new"
    # In its own mount namespace, so that all mounts disappear whatever happens.
    # shellcheck disable=SC2086 # no mirror is no argument
    env ${proxy:+http_proxy="$proxy"} unshare --mount debootstrap --variant=minbase \
        ${packages[0]:+--include="$(IFS=,; echo "${packages[*]}")"} trixie "$folder.new" $mirror >&2
    rm -rf -- "$folder"
    mv "$folder.new" "$folder"
}
