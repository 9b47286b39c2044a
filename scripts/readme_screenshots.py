#!/usr/bin/env python3
"""Shoots the README's pictures of the popovers: Vorlune on xfce4-panel over a desktop-like
background, light and dark, the CPU popover opened by a click on its item and the main
popover by a second start, each cropped to the panel's end and the popover.

Needs a build in build/ (scripts/test or scripts/run makes one) and the e2e packages.
Writes docs/screenshots/popover-{cpu,main}-{light,dark}.png.
"""

import os
import subprocess
import sys
import time

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
sys.path.insert(0, os.path.join(ROOT, "tests", "e2e"))
from harness import Desktop, wait_until  # noqa: E402

VORLUNE = os.path.join(ROOT, "build", "bin", "vorlune")
OUT = os.path.join(ROOT, "docs", "screenshots")
CPU_COLOUR = "#007AFF"
# The panel's end and each popover under it, from the screen's top right corner.
CROPS = {"cpu": "560x420+720+0", "main": "560x700+720+0"}


def shoot(shade):
    desktop = Desktop("xfce", os.path.join(ROOT, "build", "screenshots", "readme"), shade)
    try:
        background = os.path.join(desktop.home, "background.png")
        subprocess.run(["convert", "-size", "1280x800", "gradient:#5b7fa6-#24344d", background],
                       check=True)
        # display(1) paints the root window and exits with 1 all the same.
        subprocess.run(["display", "-window", "root", background], env=desktop.env)
        desktop.start_tray_host()
        desktop.write_settings({"persistCPU": "true", "persistMemory": "true",
                                "persistNetwork": "true", "networkCombined": "true",
                                "appearanceMode": shade.capitalize()})
        vorlune = desktop.spawn([VORLUNE])
        time.sleep(9)  # a few samples, so the graphs have a line to show
        cpu = wait_until(lambda: desktop.find_colour(desktop.screenshot("tray"), CPU_COLOUR), 15)
        if not cpu:
            raise RuntimeError("the CPU item was not drawn")
        x, y, width, height = cpu
        written = []
        for name, open_it in (
                ("cpu", lambda: desktop.click(x + width // 2, y + height // 2)),
                ("main", lambda: subprocess.run([VORLUNE], env=desktop.env, timeout=15))):
            open_it()
            time.sleep(5.0)  # the top processes need two reads, a tick apart
            path = os.path.join(OUT, f"popover-{name}-{shade}.png")
            subprocess.run(["convert", desktop.screenshot(name), "-crop", CROPS[name], "+repage", path],
                           check=True)
            written.append(path)
            desktop.click(300, 600)  # closes the popover
            time.sleep(1.0)
        vorlune.terminate()
        vorlune.wait(timeout=10)
        return written
    finally:
        desktop.close()


def main():
    os.makedirs(OUT, exist_ok=True)
    for path in shoot("light") + shoot("dark"):
        print(path)


if __name__ == "__main__":
    main()
