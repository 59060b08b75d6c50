# Shared by ./play, ./check and ./bench: packages, configuration and build. Sourced from the repository's root.

set -euo pipefail

say() { printf '%s\n' "$*" >&2; }

# install_packages COMMAND...: installs what tools/packages.txt lists for these commands and is missing.
install_packages()
{
    local wanted missing=() name
    wanted=$(awk -v commands=" $* " '!/^#/ && index(commands, " " $1 " ") { for (i = 2; i <= NF; ++i) print $i }' \
        tools/packages.txt)
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
    say "Installing ${#missing[@]} packages: ${missing[*]}"
    "${as_root[@]}" apt-get update -qq
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}"
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
