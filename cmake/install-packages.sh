# Sourced by ./run and ./test: puts Debian packages in place, and only those that are missing.

missing_packages() {
    for package in "$@"; do
        status=$(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null) || status=
        [ "$status" = installed ] || echo "$package"
    done
}

# As root, or by sudo where there is one.
as_root() {
    if [ "$(id -u)" = 0 ]; then
        "$@"
    elif command -v sudo >/dev/null; then
        sudo "$@"
    else
        echo "Not root, and there is no sudo. As root: $*" >&2
        return 1
    fi
}

# Installs what is missing of the packages given. With all of them there it asks nothing of the network.
need_packages() {
    if ! command -v dpkg-query >/dev/null; then
        echo "Not a Debian system; going on with the compiler and libraries that are here." >&2
        return 0
    fi
    missing=$(missing_packages "$@")
    [ -n "$missing" ] || return 0
    echo "Installing:" $missing
    # The lists may be missing or old: the update comes first, and its failure is the install's to tell.
    as_root env DEBIAN_FRONTEND=noninteractive sh -c '
        apt-get update -qq || true
        exec apt-get install -y -qq --no-install-recommends "$@" >/dev/null' sh $missing || {
        echo "Could not install:" $missing >&2
        return 1
    }
}

# For what is useful but not needed: goes on quietly where it cannot be had.
want_packages() {
    need_packages "$@" >/dev/null 2>&1 || true
}

build_packages="g++ cmake ninja-build pkg-config libicu-dev libsqlite3-dev nettle-dev libcli11-dev nlohmann-json3-dev
    qt6-base-dev libqt6svg6-dev libqpdf-dev libcups2-dev fonts-liberation"
# They look at what the desktop makes; its tests say what they skip without them.
desktop_test_packages="poppler-utils default-jre-headless libpdfbox2-java libjaxb-api-java libactivation-java
    cups-ipp-utils avahi-daemon xvfb xauth"
