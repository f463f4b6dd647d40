# Sourced: starts one Xvfb display and one persistent wineserver, and stops both by their
# own process ids. Programs started in between share them.

wine_session_start() {
    export MIRL_CACHE=${MIRL_CACHE:-$HOME/.cache/mirl}
    export WINEPREFIX=${MIRL_WINEPREFIX:-$MIRL_CACHE/wineprefix}
    export WINEDEBUG=-all
    local display=90
    while [ -e "/tmp/.X11-unix/X$display" ] || [ -e "/tmp/.X$display-lock" ]; do
        display=$((display + 1))
    done
    Xvfb ":$display" -screen 0 1280x1024x24 -nolisten tcp >/dev/null 2>&1 &
    MIRL_XVFB_PID=$!
    export DISPLAY=":$display"
    local i
    for i in $(seq 1 50); do
        [ -e "/tmp/.X11-unix/X$display" ] && break
        sleep 0.1
    done
    # Foreground mode keeps the server as this very process, so it can be stopped by its pid.
    wineserver -f -p >/dev/null 2>&1 &
    MIRL_WINESERVER_PID=$!
    trap wine_session_stop EXIT
    # Clients that start before the server listens launch a second server of their own for
    # the same prefix; wait for this one's socket, then start the prefix's services once.
    # The socket's folder is named after the prefix's device and inode; Debian's Wine keeps
    # it in a private folder under /tmp.
    local server_dir socket
    server_dir=server-$(stat -c '%D' "$WINEPREFIX")-$(printf '%x' "$(stat -c '%i' "$WINEPREFIX")")
    for i in $(seq 1 100); do
        for socket in /tmp/.wine-"$(id -u)"/"$server_dir"/socket /tmp/wine-*/"$server_dir"/socket; do
            [ -S "$socket" ] && break 2
        done
        sleep 0.1
    done
    "$(dirname "${BASH_SOURCE[0]}")/wine-run.sh" win64 cmd.exe /c exit >/dev/null 2>&1
}

wine_session_stop() {
    if [ -n "${MIRL_WINESERVER_PID:-}" ]; then
        # The prefix's services (services.exe, explorer.exe, plugplay.exe, winedevice.exe) outlive
        # a server that is only signalled; -k ends them with it.
        wineserver -k >/dev/null 2>&1 || true
        kill "$MIRL_WINESERVER_PID" 2>/dev/null || true
        wait "$MIRL_WINESERVER_PID" 2>/dev/null || true
        MIRL_WINESERVER_PID=
    fi
    if [ -n "${MIRL_XVFB_PID:-}" ]; then
        kill "$MIRL_XVFB_PID" 2>/dev/null || true
        wait "$MIRL_XVFB_PID" 2>/dev/null || true
        MIRL_XVFB_PID=
    fi
}
