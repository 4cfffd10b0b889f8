#!/bin/sh
# SPDX-License-Identifier: MIT

# wine.sh PROGRAM [ARGUMENTS]: runs a Windows program under Wine, without a display.

# A Windows of our own, which takes long to set up and is kept for the next clone; another Wine gets another one.
WINEPREFIX=${XDG_CACHE_HOME:-$HOME/.cache}/OmnarRaster/$(wine --version 2>/dev/null)
WINEDEBUG=-all
# Without a screen, Explorer would hold up the first drawing of each program for many seconds.
WINEDLLOVERRIDES='mscoree,mshtml,explorer.exe='
export WINEPREFIX WINEDEBUG WINEDLLOVERRIDES
unset DISPLAY

# The first program of all starts Wine's own processes, which would keep its output open for as long as they live. So
# that first program is one without output; the server then stays for a minute after the last one.
mkdir -p "$WINEPREFIX"
if wineserver --persistent=60 >/dev/null 2>&1; then
    wineboot --init >/dev/null 2>&1
fi
exec wine "$@"
