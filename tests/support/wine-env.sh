# Sourced: the environment of everything that runs under Wine here. WINEPREFIX is the caller's, and KORB_WINEARCH where
# it is to be a 64-bit Windows: win64.
export WINEARCH="${KORB_WINEARCH:-win32}" WINEDEBUG=-all LC_ALL=C.UTF-8 TZ=UTC
export WINEDLLOVERRIDES="winemenubuilder.exe=d;mscoree=d;mshtml=d"
# Without a display Wine draws nothing, but every window is there. KORB_KEEP_DISPLAY is for who wants to look.
[ -n "${KORB_KEEP_DISPLAY:-}" ] || unset DISPLAY
