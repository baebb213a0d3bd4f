# Sourced by ./run and ./test: says what happens, installs what is missing, configures and builds a preset.
# Messages go to standard error, so that `./run status --json | jq` reads JSON only.

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

say() { printf '%s\n' "$*" >&2; }

# The packages of the named sections of packaging/packages.
packages_of() {
    awk -v wanted=" $* " '
        { sub(/#.*/, "") }
        /^\[/ { section = substr($1, 2, length($1) - 2); next }
        NF && index(wanted, " " section " ") { print $1 }' "$root/packaging/packages"
}

# Installs the packages of the named sections that are not there yet. Needs no network when none is missing.
need_packages() {
    local -a wanted missing=() become=()
    mapfile -t wanted < <(packages_of "$@")
    if ! command -v dpkg-query >/dev/null || ! command -v apt-get >/dev/null; then
        say "This is no Debian system, so I leave its packages alone. Kippo needs the counterparts of:"
        say "  ${wanted[*]}"
        return
    fi
    local installed name
    installed=$(dpkg-query -W -f '${db:Status-Status} ${Package}\n' "${wanted[@]}" 2>/dev/null || true)
    for name in "${wanted[@]}"; do
        grep -qxF "installed $name" <<<"$installed" || missing+=("$name")
    done
    ((${#missing[@]})) || return 0

    if ((EUID != 0)); then
        if ! command -v sudo >/dev/null; then
            say "These packages are missing, and only root can install them:"
            say "  apt-get install ${missing[*]}"
            exit 1
        fi
        become=(sudo)
    fi
    say "Installing ${#missing[@]} Debian packages: ${missing[*]}"
    local log
    log=$(mktemp)
    # An update that fails (one dead mirror among several) is no reason to stop: the lists at hand may do.
    "${become[@]}" apt-get update >"$log" 2>&1 || true
    if ! "${become[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y --no-install-recommends \
        "${missing[@]}" >>"$log" 2>&1 </dev/null; then
        tail -n 30 "$log" >&2
        say "The packages could not be installed; apt's own words are above."
        rm -f "$log"
        exit 1
    fi
    rm -f "$log"
}

# Configures the preset when that was not done since its description changed. More arguments go to cmake.
configure() {
    local preset=$1 tree="$root/build/$1"
    shift
    if [[ ! -e $tree/build.ninja || $root/CMakePresets.json -nt $tree/build.ninja ]]; then
        (cd "$root" && cmake --preset "$preset" "$@") >"$root/build/$preset-configure.log" 2>&1 || {
            cat "$root/build/$preset-configure.log" >&2
            return 1
        }
    fi
}

# Builds the preset; silent when there is nothing to do. More arguments are targets.
build() {
    local preset=$1 tree="$root/build/$1"
    shift
    mkdir -p "$root/build"
    configure "$preset" || return 1
    if [[ $(ninja -C "$tree" -n "$@" 2>/dev/null) == *"no work to do"* ]]; then
        return 0
    fi
    say "Building ($preset) …"
    if [[ -t 2 ]]; then
        ninja -C "$tree" "$@" >&2
    else
        ninja -C "$tree" --quiet "$@" >&2
    fi
}
