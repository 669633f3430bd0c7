# shellcheck shell=bash
# Sourced by the run and test commands: installs the Debian packages that a
# build needs and this machine lacks (apt-get, as root or through sudo).

SUDO=""
if [[ $(id -u) -ne 0 ]]; then SUDO=sudo; fi
APT_UPDATED=no

log() { printf '\n=== %s\n' "$*"; }

is_installed() { [[ $(dpkg-query -W -f='${Status}' "$1" 2>/dev/null) == "install ok installed" ]]; }

# Installs those of the given packages that are missing.
ensure_packages() {
    local missing=() package
    for package in "$@"; do
        is_installed "$package" || missing+=("$package")
    done
    ((${#missing[@]} == 0)) && return 0
    log "installing ${missing[*]}"
    if [[ $APT_UPDATED == no ]]; then
        $SUDO env DEBIAN_FRONTEND=noninteractive apt-get update -q
        APT_UPDATED=yes
    fi
    $SUDO env DEBIAN_FRONTEND=noninteractive apt-get install -y -q --no-install-recommends "${missing[@]}"
}
