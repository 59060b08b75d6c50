# Shared by ./play, ./check and ./bench: packages, configuration and build. Sourced from the repository's root.

set -euo pipefail

say() { printf '%s\n' "$*" >&2; }

# print_header FILE: prints the comment that a command begins with, which is its help.
print_header() { sed -n '2,/^[^#]/s/^# \{0,1\}//p' "$1"; }

# packages_for COMMAND...: what tools/packages.txt lists for these commands.
packages_for()
{
    awk -v commands=" $* " '!/^#/ && index(commands, " " $1 " ") { for (i = 2; i <= NF; ++i) print $i }' \
        tools/packages.txt
}

# install_packages COMMAND...: installs what these commands need and is missing. On a system without Debian's package
# tools it names what is needed, and ends if there is not even a compiler.
install_packages()
{
    local wanted missing=() name
    wanted=$(packages_for "$@")
    if ! command -v dpkg-query >/dev/null || ! command -v apt-get >/dev/null; then
        ask_for_libraries "$wanted"
        return
    fi
    for name in $wanted; do
        [[ $name == *:* ]] && command -v "${name#*:}" >/dev/null && continue
        name=${name%:*}
        dpkg-query -W -f='${Status}' "$name" 2>/dev/null | grep -q 'install ok installed' || missing+=("$name")
    done
    [ ${#missing[@]} -eq 0 ] && return 0

    local as_root=()
    if [ "$(id -u)" -ne 0 ]; then
        command -v sudo >/dev/null || { say "Missing packages, and no sudo to install them: ${missing[*]}"; exit 1; }
        as_root=(sudo)
    fi
    say "Installing ${#missing[@]} packages of the distribution with '${as_root[*]:+sudo }apt-get install':" \
        "${missing[*]}"
    "${as_root[@]}" apt-get update -qq
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}"
}

# ask_for_libraries PACKAGES: names what has to be there on a system whose packages are not Debian's.
ask_for_libraries()
{
    local tool absent=()
    say "This system has no dpkg and apt-get, so nothing is installed. What is needed, by the names of Debian 12's" \
        "packages:" $(sed 's/:.*//' <<<"$1")
    for tool in c++ cmake ninja pkg-config doxygen python3.11; do
        command -v "$tool" >/dev/null || absent+=("$tool")
    done
    [ ${#absent[@]} -eq 0 ] || { say "These commands are missing: ${absent[*]}"; exit 1; }
}

# build_targets FOLDER "CMAKE OPTIONS" TARGET...: configures, which sees newly installed packages, and builds with
# progress shown.
build_targets()
{
    local folder=$1 options=$2
    shift 2
    [ -f "$folder/build.ninja" ] || say "Configuring $folder ..."
    # shellcheck disable=SC2086
    cmake -S . -B "$folder" -G Ninja $options >"$folder.configure.log" 2>&1 ||
        { cat "$folder.configure.log" >&2; exit 1; }
    NINJA_STATUS='[%f/%t, %es] ' cmake --build "$folder" --target "$@"
}
