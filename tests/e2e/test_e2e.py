"""The real Vorlune on Xvfb with a real tray host ($VORLUNE_TRAY_HOST: tint2 over XEmbed,
xfce over StatusNotifierItem), driven from outside as a person would."""

import os
import signal
import subprocess
import sys
import time
import unittest

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from harness import Desktop, processes, run, wait_until  # noqa: E402

BINARY_DIR = os.environ["VORLUNE_BINARY_DIR"]
VORLUNE = os.path.join(BINARY_DIR, "bin", "vorlune")
CPU, MEMORY, DISK = "#FF00FF", "#00FFFF", "#FFFF00"
PANEL_FREE = (0, 40, 1280, 720)  # both test panels sit outside this band
SETTINGS = {"persistCPU": "true", "persistMemory": "true", "persistentDisplayStyle": "Text Only",
            "cpuColorHex": CPU[1:], "memoryColorHex": MEMORY[1:], "diskColorHex": DISK[1:]}


class Session(unittest.TestCase):
    """Vorlune started on a fresh desktop with the CPU and memory items in marker colours."""

    def setUp(self):
        self.desktop = Desktop(os.environ.get("VORLUNE_TRAY_HOST", "tint2"),
                               os.path.join(BINARY_DIR, "screenshots", "e2e", self._testMethodName))
        self.addCleanup(self.desktop.close)
        self.desktop.start_tray_host()
        self.desktop.write_settings(SETTINGS)
        self.vorlune = self.desktop.spawn([VORLUNE])
        self.cpu = self.wait_for(CPU, "start")
        self.assertIsNotNone(self.cpu, "the CPU item is drawn in its colour")

    def wait_for(self, colour, name, present=True, timeout=15):
        def check():
            found = self.desktop.find_colour(self.desktop.screenshot(name), colour)
            return found if present else found is None
        return wait_until(check, timeout, 0.5)

    def window(self, title, timeout=10):
        return wait_until(lambda: self.desktop.windows("--name", title), timeout)

    def click_section(self, colour, name):
        shot = self.desktop.crop(self.desktop.screenshot(name), PANEL_FREE)
        found = self.desktop.find_colour(shot, colour)
        self.assertIsNotNone(found, f"the main popover draws a section in {colour}")
        x, y, width, height = found
        self.desktop.click(PANEL_FREE[0] + x + width // 2, PANEL_FREE[1] + y + height // 2)


class Tray(Session):
    def test_item_popover_host_restart_and_quit(self):
        self.assertTrue(self.wait_for(MEMORY, "items"), "the memory item is drawn")
        x, y, width, height = self.cpu
        before = self.desktop.screenshot("before-click")
        self.desktop.click(x + width // 2, y + height // 2)
        time.sleep(1.5)
        opened = self.desktop.screenshot("cpu-popover")
        self.assertGreater(self.desktop.changed_pixels(before, opened), 20000, "a popover opened")
        self.desktop.click(640, 300)
        time.sleep(1.5)
        closed = self.desktop.screenshot("popover-closed")
        self.assertLess(self.desktop.changed_pixels(before, closed), 5000, "the popover closed")

        self.desktop.panel.kill()
        self.desktop.panel.wait()
        time.sleep(1.0)
        self.desktop.start_panel()
        self.assertTrue(self.wait_for(CPU, "host-restarted", timeout=25), "the CPU item is back")

        # Quit while a helper may be running: it starts every 2 s and lasts milliseconds.
        wait_until(lambda: processes("smc_helper", self.desktop.runtime), 5, 0.05)
        self.vorlune.send_signal(signal.SIGTERM)
        self.assertEqual(self.vorlune.wait(timeout=15), 0)
        for colour in (CPU, MEMORY):
            self.assertTrue(self.wait_for(colour, "quit", present=False, timeout=5), colour)
        time.sleep(2.5)
        self.assertEqual(processes("smc_helper", self.desktop.runtime), [], "a helper is left")


class WholeApp(Session):
    def test_items_follow_settings_written_by_another_process(self):
        self.desktop.write_settings(dict(SETTINGS, persistDisk="true"))
        self.assertTrue(self.wait_for(DISK, "disk-on"), "the disk item appears")
        self.desktop.write_settings(SETTINGS)
        self.assertTrue(self.wait_for(DISK, "disk-off", present=False), "the disk item goes")

        shot = self.desktop.screenshot("style-text")
        x, y, width, height = self.desktop.find_colour(shot, CPU)
        region = (max(0, x - 4), max(0, y - 4), width + 8, height + 8)
        before = self.desktop.crop(shot, region)
        self.desktop.write_settings(dict(SETTINGS, styleCPU="Graph Only"))

        def restyled():
            after = self.desktop.crop(self.desktop.screenshot("style-graph"), region)
            return self.desktop.changed_pixels(before, after) > 20
        self.assertTrue(wait_until(restyled, 15, 0.5), "the CPU item is drawn as a graph")

    def test_main_popover_sections_open_their_detail(self):
        # A second start asks the running one to open its main popover, then exits.
        self.assertEqual(subprocess.run([VORLUNE], env=self.desktop.env, timeout=20).returncode, 0)
        self.assertTrue(self.window("^Vorlune$"), "the main popover opened")
        time.sleep(0.5)
        self.click_section(DISK, "main-popover")
        self.assertTrue(self.window("^Disk$"), "Disk has no item: a window titled Disk opens")
        self.desktop.screenshot("disk-window")
        # Closed the way a person would, through the window manager, pressing again when
        # a loaded machine let the first press reach the window before its focus did.
        def closed():
            if not self.desktop.windows("--name", "^Disk$"):
                return True
            run(["xdotool", "search", "--name", "^Disk$", "windowactivate", "--sync", "key",
                 "alt+F4"], env=self.desktop.env)
            return False
        self.assertTrue(wait_until(closed, 15, 2.0), "the Disk window closes")
        self.assertIsNone(self.vorlune.poll(), "Vorlune still runs")
        time.sleep(2.0)  # let the window manager settle focus, as a person's pause would

        subprocess.run([VORLUNE], env=self.desktop.env, timeout=20)
        self.assertTrue(self.window("^Vorlune$"), "the main popover opened again")
        time.sleep(1.0)
        self.click_section(CPU, "main-popover-again")
        time.sleep(1.5)  # no screenshot while the popup takes its pointer grab
        self.assertTrue(self.window("^Vorlune: CPU$"), "CPU has an item: its popover opens")
        self.assertFalse(self.desktop.windows("--name", "^CPU$"), "and no stand-alone window")
        self.desktop.screenshot("cpu-popover-from-main")


if __name__ == "__main__":
    unittest.main(verbosity=2)
