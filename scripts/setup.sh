#!/usr/bin/env bash
# Installs what the build and the tests need, once. A second run checks and returns in seconds.
#   - cross compilers (i686 primary, x86_64), zlib for both, CMake, Ninja
#   - Wine (32- and 64-bit loaders), its fonts, Liberation fonts, Xvfb
#   - Debian's zlib source package, for minizip, unpacked in a cache outside the work tree
#   - one Wine prefix for every test run, created by the 64-bit loader so that it runs both
#   - the zh_CN.UTF-8 locale (Wine under code page 936 for the input-method tests), in the cache
set -euo pipefail

CACHE=${MIRL_CACHE:-$HOME/.cache/mirl}
PREFIX=${MIRL_WINEPREFIX:-$CACHE/wineprefix}
mkdir -p "$CACHE"

log() { printf 'setup: %s\n' "$*"; }

SUDO=""
if [ "$(id -u)" != 0 ]; then SUDO="sudo"; fi

PACKAGES=(mingw-w64 g++-mingw-w64-i686 g++-mingw-w64-x86-64 libz-mingw-w64-dev
          cmake ninja-build googletest wine wine32:i386 wine64 libwine:amd64 libwine:i386
          fonts-wine fonts-liberation xvfb xauth dpkg-dev bzip2 locales)

missing_packages() {
    local p
    for p in "${PACKAGES[@]}"; do
        dpkg-query -W -f='${Status}\n' "$p" 2>/dev/null | grep -q '^install ok installed$' || echo "$p"
    done
}

# The i386 index of the security suite can lag behind the amd64 one, and apt then refuses
# wine32 ("held broken packages"). One apt configuration restricted to the main suites keeps
# both architectures at the same versions. The mirror is read from the system's own sources.
APT_DIR=$CACHE/apt
apt_main() {
    $SUDO apt-get -o Dir::Etc::SourceParts="$APT_DIR/sources.d" -o Dir::Etc::SourceList=/dev/null \
        -o Dir::State::Lists="$APT_DIR/lists" "$@"
}

prepare_apt() {
    mkdir -p "$APT_DIR/sources.d" "$APT_DIR/lists/partial"
    local uri keyring
    uri=$(awk '/^URIs:/ && $2 !~ /security/ {print $2; exit}' /etc/apt/sources.list.d/*.sources 2>/dev/null || true)
    if [ -z "$uri" ]; then
        uri=$(awk '$1=="deb" && $3 !~ /security/ {print $2; exit}' /etc/apt/sources.list 2>/dev/null || true)
    fi
    [ -n "$uri" ] || { echo "setup: no Debian mirror found in the system's apt sources" >&2; exit 1; }
    keyring=/usr/share/keyrings/debian-archive-keyring.gpg
    cat > "$APT_DIR/sources.d/mirl.sources" <<SRC
Types: deb deb-src
URIs: $uri
Suites: bookworm bookworm-updates
Components: main
Signed-By: $keyring
SRC
}

install_packages() {
    local need
    need=$(missing_packages)
    [ -z "$need" ] && return 0
    log "installing: $(echo $need)"
    if ! dpkg --print-foreign-architectures | grep -qx i386; then
        $SUDO dpkg --add-architecture i386
    fi
    prepare_apt
    apt_main update -qq
    # Asked for together: installing wine32 alone removes wine64.
    DEBIAN_FRONTEND=noninteractive apt_main install -y -q --no-install-recommends \
        --allow-downgrades "${PACKAGES[@]}"
}

fetch_zlib_source() {
    local dir=$CACHE/zlib-src
    if [ -f "$dir/contrib/minizip/unzip.c" ]; then return 0; fi
    log "fetching Debian's zlib source for minizip"
    prepare_apt
    [ -d "$APT_DIR/lists" ] && ls "$APT_DIR/lists" | grep -q Sources || apt_main update -qq
    local tmp
    tmp=$(mktemp -d)
    (cd "$tmp" && apt_main source --download-only zlib >/dev/null)
    local tarball
    tarball=$(ls "$tmp"/zlib_*.orig.tar.* | head -n 1)
    rm -rf "$dir.new" && mkdir -p "$dir.new"
    tar -xf "$tarball" -C "$dir.new" --strip-components=1
    rm -rf "$dir" && mv "$dir.new" "$dir"
    rm -rf "$tmp"
}

prepare_prefix() {
    local marker=$PREFIX/.mirl-ready
    [ -f "$marker" ] && return 0
    log "creating the Wine prefix $PREFIX"
    rm -rf "$PREFIX"
    mkdir -p "$(dirname "$PREFIX")"
    export WINEPREFIX=$PREFIX WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml="
    # Created by the 64-bit loader: such a prefix runs 32- and 64-bit programs alike.
    /usr/lib/wine/wine64 wineboot --init >/dev/null 2>&1 || true
    wineserver -w || true
    mkdir -p "$PREFIX/drive_c/windows/Fonts"
    cp /usr/share/wine/fonts/*.ttf "$PREFIX/drive_c/windows/Fonts/" 2>/dev/null || true
    local reg
    reg=$(mktemp --suffix=.reg)
    # "Arial" resolves to Liberation Sans; windows are unmanaged so that hiding one is instant.
    printf 'REGEDIT4\r\n\r\n[HKEY_CURRENT_USER\\Software\\Wine\\Fonts\\Replacements]\r\n"Arial"="Liberation Sans"\r\n\r\n[HKEY_CURRENT_USER\\Software\\Wine\\X11 Driver]\r\n"Managed"="N"\r\n' > "$reg"
    /usr/lib/wine/wine64 regedit "$(winepath_of "$reg")" >/dev/null 2>&1
    wineserver -w || true
    rm -f "$reg"
    grep -q '"Managed"="N"' "$PREFIX/user.reg" || { echo "setup: the prefix's registry was not written" >&2; exit 1; }
    touch "$marker"
}

winepath_of() { echo "Z:${1//\//\\}"; }

# The edit's input-method tests run Wine under code page 936, which Wine takes from the Unix
# locale zh_CN.UTF-8; it is compiled into the cache (LOCPATH) rather than into the system.
prepare_locale() {
    [ -f "$CACHE/locale/zh_CN.UTF-8/LC_CTYPE" ] && return 0
    log "compiling the zh_CN.UTF-8 locale"
    mkdir -p "$CACHE/locale"
    localedef -i zh_CN -f UTF-8 "$CACHE/locale/zh_CN.UTF-8" >/dev/null 2>&1 || true
    [ -f "$CACHE/locale/zh_CN.UTF-8/LC_CTYPE" ] || { echo "setup: localedef made no zh_CN.UTF-8" >&2; exit 1; }
}

install_packages
fetch_zlib_source
prepare_prefix
prepare_locale
log "ready (cache $CACHE)"
