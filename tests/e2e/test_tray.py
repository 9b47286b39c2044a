"""Vorlune's tray items on a real X server with a real tray host."""

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
CPU_MARKER = "#FF00FF"
MEMORY_MARKER = "#00FFFF"


class TrayItems(unittest.TestCase):
    def setUp(self):
        self.desktop = Desktop(HOST, os.path.join(BINARY_DIR, "screenshots", "e2e"))
        self.addCleanup(self.desktop.close)
        self.desktop.start_tray_host()
        self.desktop.write_settings({
            "persistCPU": "true", "persistMemory": "true", "persistDisk": "true",
            "persistentDisplayStyle": "Text Only",
            "cpuColorHex": CPU_MARKER[1:], "memoryColorHex": MEMORY_MARKER[1:],
        })
        self.log = open(os.path.join(self.desktop.home, "vorlune.log"), "w")
        self.vorlune = self.desktop.spawn([os.path.join(BINARY_DIR, "bin", "vorlune")],
                                          stderr=self.log)

    def find_item(self, colour, name):
        def located():
            return self.desktop.find_colour(self.desktop.screenshot(name), colour)
        return wait_until(located, 20, 0.5)

    def test_items_open_and_close_their_popover_and_leave_on_quit(self):
        cpu = self.find_item(CPU_MARKER, "items")
        self.assertIsNotNone(cpu, "the CPU item is drawn in its colour")
        self.assertIsNotNone(self.find_item(MEMORY_MARKER, "items"), "the memory item is drawn")
        x, y, w, h = cpu
        self.assertGreater(y, 0)

        before = self.desktop.screenshot("before-click")
        self.desktop.click(x + w // 2, y + h // 2)
        time.sleep(1.5)
        opened = self.desktop.screenshot("cpu-popover")
        self.assertGreater(self.desktop.changed_pixels(before, opened), 20000,
                           "a popover opened after the click")

        self.desktop.click(640, 300)
        time.sleep(1.5)
        closed = self.desktop.screenshot("popover-closed")
        self.assertLess(self.desktop.changed_pixels(before, closed), 5000,
                        "a click elsewhere closed the popover")

        self.vorlune.send_signal(signal.SIGTERM)
        self.assertEqual(self.vorlune.wait(timeout=10), 0)
        time.sleep(1.0)
        after = self.desktop.screenshot("after-quit")
        self.assertIsNone(self.desktop.find_colour(after, CPU_MARKER), "no item is left")
        self.assertIsNone(self.desktop.find_colour(after, MEMORY_MARKER), "no item is left")


if __name__ == "__main__":
    unittest.main(verbosity=2)
