"""The whole application on a real X server and tray host, driven from outside."""

import os
import signal
import subprocess
import sys
import time
import unittest

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from harness import Desktop, wait_until  # noqa: E402

BINARY_DIR = os.environ["VORLUNE_BINARY_DIR"]
HOST = os.environ.get("VORLUNE_TRAY_HOST", "tint2")
VORLUNE = os.path.join(BINARY_DIR, "bin", "vorlune")
CPU_MARKER = "#FF00FF"
DISK_MARKER = "#FFFF00"
BASE_SETTINGS = {
    "persistCPU": "true",
    "persistentDisplayStyle": "Text Only",
    "cpuColorHex": CPU_MARKER[1:],
    "diskColorHex": DISK_MARKER[1:],
}


class WholeApp(unittest.TestCase):
    def setUp(self):
        self.desktop = Desktop(HOST, os.path.join(BINARY_DIR, "screenshots", "e2e-app"))
        self.addCleanup(self.desktop.close)
        self.desktop.start_tray_host()
        self.settings = dict(BASE_SETTINGS)
        self.desktop.write_settings(self.settings)
        self.vorlune = self.desktop.spawn([VORLUNE])
        self.assertTrue(self.wait_for_colour(CPU_MARKER, "start"), "the CPU item appears")

    def change_settings(self, **values):
        self.settings.update(values)
        self.desktop.write_settings(self.settings)

    def wait_for_colour(self, colour, name, present=True, timeout=15, region=None):
        def check():
            shot = self.desktop.screenshot(name)
            if region:
                shot = self.crop(shot, region)
            found = self.desktop.find_colour(shot, colour)
            return found if present else found is None
        return wait_until(check, timeout, 0.5)

    def crop(self, shot, region):
        x, y, w, h = region
        cropped = shot.replace(".png", "-crop.png")
        subprocess.run(["convert", shot, "-crop", f"{w}x{h}+{x}+{y}", "+repage", cropped],
                       check=True)
        return cropped

    def visible_window(self, name):
        """Ids of the mapped windows whose title matches `name`."""
        found = subprocess.run(["xdotool", "search", "--name", name], env=self.desktop.env,
                               capture_output=True, text=True).stdout.split()
        mapped = []
        for window in found:
            info = subprocess.run(["xwininfo", "-id", window], env=self.desktop.env,
                                  capture_output=True, text=True).stdout
            if "IsViewable" in info:
                mapped.append(window)
        return mapped

    def helpers_of_this_session(self):
        """smc_helper processes started by this test's Vorlune (they share its runtime dir)."""
        found = []
        for pid in filter(str.isdigit, os.listdir("/proc")):
            try:
                with open(f"/proc/{pid}/cmdline", "rb") as f:
                    if b"smc_helper" not in f.read():
                        continue
                with open(f"/proc/{pid}/environ", "rb") as f:
                    if self.desktop.runtime.encode() in f.read():
                        found.append(pid)
            except OSError:
                pass
        return found

    def test_items_follow_settings_written_by_another_process(self):
        self.change_settings(persistDisk="true")
        self.assertTrue(self.wait_for_colour(DISK_MARKER, "disk-on"), "the disk item appears")
        self.change_settings(persistDisk="false")
        self.assertTrue(self.wait_for_colour(DISK_MARKER, "disk-off", present=False),
                        "the disk item goes away")

        before = self.desktop.screenshot("style-text")
        x, y, w, h = self.desktop.find_colour(before, CPU_MARKER)
        self.change_settings(styleCPU="Graph Only")

        def restyled():
            after = self.desktop.screenshot("style-graph")
            region = (max(0, x - 4), max(0, y - 4), w + 8, h + 8)
            return self.desktop.changed_pixels(self.crop(before, region),
                                               self.crop(after, region)) > 20
        self.assertTrue(wait_until(restyled, 15, 0.5), "the CPU item is drawn as a graph")

    def test_main_popover_sections_open_their_detail(self):
        # A second start asks the running one to open its main popover, then exits.
        second = subprocess.run([VORLUNE], env=self.desktop.env, timeout=20)
        self.assertEqual(second.returncode, 0)
        self.assertTrue(wait_until(lambda: self.visible_window("^Vorlune$"), 10),
                        "the main popover opened")
        time.sleep(0.5)
        shot = self.desktop.screenshot("main-popover")
        panel_free = (0, 40, 1280, 720)  # both test panels sit outside this band
        disk = self.desktop.find_colour(self.crop(shot, panel_free), DISK_MARKER)
        self.assertIsNotNone(disk, "the Disk section is drawn in the disk colour")
        self.desktop.click(disk[0] + disk[2] // 2, 40 + disk[1] + disk[3] // 2)
        self.assertTrue(wait_until(lambda: self.visible_window("^Disk$"), 10),
                        "Disk has no item: a stand-alone window titled Disk opens")
        self.desktop.screenshot("disk-window")
        # Closed the way a person would, through the window manager.
        subprocess.run(["xdotool", "search", "--name", "^Disk$", "windowactivate", "--sync",
                        "key", "alt+F4"], env=self.desktop.env)
        self.assertTrue(wait_until(lambda: not self.visible_window("^Disk$"), 10))
        self.assertIsNone(self.vorlune.poll(), "Vorlune still runs")
        time.sleep(2.0)  # let the window manager settle focus, as a person's pause would

        subprocess.run([VORLUNE], env=self.desktop.env, timeout=20)
        self.assertTrue(wait_until(lambda: self.visible_window("^Vorlune$"), 10))
        time.sleep(1.0)
        shot = self.desktop.screenshot("main-popover-again")
        cpu = self.desktop.find_colour(self.crop(shot, panel_free), CPU_MARKER)
        self.assertIsNotNone(cpu, "the CPU section is drawn in the CPU colour")
        self.desktop.click(cpu[0] + cpu[2] // 2, 40 + cpu[1] + cpu[3] // 2)

        time.sleep(1.5)  # no screenshot while the popup takes its pointer grab
        self.assertTrue(wait_until(lambda: self.visible_window("^Vorlune: CPU$"), 10),
                        "CPU has an item: its popover opens")
        self.assertFalse(self.visible_window("^CPU$"), "and no stand-alone window")
        self.desktop.screenshot("cpu-popover-from-main")

    def test_items_come_back_after_the_tray_host_restarts(self):
        self.desktop.restart_tray_host()
        self.assertTrue(self.wait_for_colour(CPU_MARKER, "host-restarted", timeout=25),
                        "the CPU item is back in the new tray")

    def test_quit_removes_every_item_and_leaves_no_helper(self):
        wait_until(self.helpers_of_this_session, 5, 0.05)
        self.vorlune.send_signal(signal.SIGTERM)
        self.assertEqual(self.vorlune.wait(timeout=15), 0)
        self.assertTrue(self.wait_for_colour(CPU_MARKER, "quit", present=False, timeout=5),
                        "no item is left")
        time.sleep(2.5)
        self.assertEqual(self.helpers_of_this_session(), [], "no helper process is left")


if __name__ == "__main__":
    unittest.main(verbosity=2)
