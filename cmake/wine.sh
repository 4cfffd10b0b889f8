#!/bin/sh
# SPDX-License-Identifier: MIT

# wine.sh PROGRAM [ARGUMENTS]: runs a Windows program under Wine, without a display.

# A separate prefix for each version of Wine. It takes long to set up and is shared by all clones.
WINEPREFIX=${XDG_CACHE_HOME:-$HOME/.cache}/OmnarRaster/$(wine --version 2>/dev/null)
WINEDEBUG=-all
# Without a display, Explorer would delay the first drawing of each program by many seconds.
WINEDLLOVERRIDES='mscoree,mshtml,explorer.exe='
export WINEPREFIX WINEDEBUG WINEDLLOVERRIDES
unset DISPLAY

# The first program starts Wine's processes, which keep its output open until they end. So the first program is one without
# output. The server then stays for 60 seconds after the last program.
mkdir -p "$WINEPREFIX"
if wineserver --persistent=60 >/dev/null 2>&1; then
    wineboot --init >/dev/null 2>&1
fi
exec wine "$@"
