# Sourced by the other scripts: where things are, and how to get what is missing on Debian 12.

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
build_dir=$root/build/release
jobs=$(nproc)

packages=(g++ cmake ninja-build pkg-config ccache git ca-certificates clang-format libgdal-dev libgeos-dev libcairo2-dev
          libcli11-dev nlohmann-json3-dev libfmt-dev libgtest-dev libbenchmark-dev)

install_missing() {
    local missing=()
    local package
    for package in "${packages[@]}"; do
        dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'install ok installed' || missing+=("$package")
    done
    if [ ${#missing[@]} -eq 0 ]; then
        return
    fi
    echo "Installing ${missing[*]}"
    local as_root=()
    if [ "$(id -u)" -ne 0 ]; then
        as_root=(sudo)
    fi
    "${as_root[@]}" apt-get update -qq
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" \
        > /dev/null
}
