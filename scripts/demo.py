#!/usr/bin/env python3
"""Shows what Vorlune looks like on a machine without a display.

Starts a virtual display with a tray panel, runs Vorlune with every item
enabled in a throwaway settings file (the user's own settings are untouched),
opens the main popover and one detail popover, writes screenshots under out/
and quits Vorlune cleanly.
"""

import os
import signal
import subprocess
import sys
import time

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
sys.path.insert(0, os.path.join(ROOT, "tests", "e2e"))
from harness import Desktop, wait_until  # noqa: E402

VORLUNE = os.path.join(ROOT, "build", "bin", "vorlune")
OUT = os.path.join(ROOT, "out")
CPU_COLOUR = "#007AFF"


def crop(source, name, geometry):
    path = os.path.join(OUT, name)
    subprocess.run(["convert", source, "-crop", geometry, "+repage", path], check=True)
    return path


def main():
    os.makedirs(OUT, exist_ok=True)
    desktop = Desktop("tint2", OUT)
    written = []
    try:
        desktop.start_tray_host()
        items = ["persistCPU", "persistMemory", "persistDisk", "persistNetworkIn",
                 "persistNetworkOut", "persistCPUTemp", "persistGPUTemp", "persistFan"]
        desktop.write_settings({**{key: "true" for key in items},
                                "persistentDisplayStyle": "Graph & Text"})
        vorlune = desktop.spawn([VORLUNE])
        time.sleep(7)  # a few samples, so the graphs have something to show
        tray = desktop.screenshot("tray")
        written.append(crop(tray, "vorlune-tray.png", "420x30+0+770"))

        # A second start asks the running Vorlune to open its main popover.
        subprocess.run([VORLUNE], env=desktop.env, timeout=15)
        time.sleep(1.5)
        main_popover = desktop.screenshot("main-popover")
        written.append(crop(main_popover, "vorlune-main-popover.png", "420x800+0+0"))

        subprocess.run(["xdotool", "key", "Escape"], env=desktop.env)
        time.sleep(0.5)
        cpu = wait_until(lambda: desktop.find_colour(desktop.screenshot("tray"), CPU_COLOUR), 10)
        if cpu:
            x, y, w, h = cpu
            desktop.click(x + w // 2, y + h // 2)
            time.sleep(1.5)
            detail = desktop.screenshot("cpu-popover")
            written.append(crop(detail, "vorlune-cpu-popover.png", "420x800+0+0"))

        vorlune.send_signal(signal.SIGTERM)
        vorlune.wait(timeout=10)
    finally:
        desktop.close()
    print("Vorlune ran on a virtual display (no display was found). Screenshots:")
    for path in written:
        print("  " + path)


if __name__ == "__main__":
    main()
