#pragma once

/// `vorlune --bar waybar|i3bar|plain [--items cpu,memory,...]`: the sampler with no window
/// and no tray, writing one line a tick to standard output for bars without a tray
/// (waybar, i3bar/i3blocks, polybar). Needs no display. Returns the exit status: 0 when
/// the reader goes away or on SIGTERM, 2 for a wrong command line.
int runBarMode(int argc, char** argv);
