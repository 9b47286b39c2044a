"""The settings file broken by another hand while the application runs: replaced by
garbage, deleted, a directory put where the file must be, a file where its folder must
be. Root ignores permissions, so those two stand in for an unwritable file.

Every read must give the last value or the default, the program must keep running, and a
valid setting the program writes must read back as written and land in the file once
the file can be written again.
"""

import os
import shutil
import time
import unittest

from soak_prefix import Prefix, RunningSoak

PERIOD = 2.0

DEFAULTS = {
    "persistCPU": "false",
    "persistMemory": "false",
    "persistDisk": "false",
    "persistFan": "false",
    "styleCPU": "",
    "styleMemory": "",
    "graphWidth": "40",
}
USER_FILE = """[General]
persistCPU=true
persistMemory=true
styleCPU=Text Only
graphWidth=44
"""
USER_VALUES = {"persistCPU": "true", "persistMemory": "true", "styleCPU": "Text Only",
               "graphWidth": "44"}
GARBAGE = (b"\xff\xfe\x00[General\npersistCPU=maybe\n=\n[[[\x00\x01styleCPU\n"
           b"graphWidth=@Variant(\x00\x00\x00\x7f)\n" + bytes(range(256)))


class SettingsFaultsTest(unittest.TestCase):
    def setUp(self):
        self.prefix = Prefix.from_environment()
        self.addCleanup(self.prefix.remove)
        self.folder = os.path.join(self.prefix.root, "config", "vorlune")
        self.file = os.path.join(self.folder, "vorlune.conf")
        os.makedirs(self.folder)
        self.write_file(USER_FILE)
        self.soak = RunningSoak(self.prefix, self.file)
        self.addCleanup(self.soak.kill)

    def write_file(self, content):
        """Replaces the file the way an editor does: a new file renamed over it."""
        staged = self.file + ".edit"
        with open(staged, "wb" if isinstance(content, bytes) else "w") as file:
            file.write(content)
        os.rename(staged, self.file)

    def file_text(self):
        try:
            with open(self.file, "rb") as file:
                return file.read().decode("utf-8", "replace")
        except OSError:
            return None

    def next_ticks(self, count=1):
        """Lets the program see the change: it re-reads the file on every sample."""
        moment = time.monotonic()
        samples = self.soak.samples_after(moment, count, timeout=count * PERIOD + 10)
        self.assertEqual(len(samples), count,
                         "the program stopped sampling; stderr: %s" % "".join(self.soak.stderr))
        return samples

    def assert_last_or_default(self, what, last):
        seen = []
        for key, default in DEFAULTS.items():
            value = self.soak.get(key)
            allowed = {default, last.get(key, default)}
            self.assertIn(value, allowed, "%s: %s" % (what, key))
            if last.get(key, default) != default:
                seen.append("%s %s" % (key, "last" if value == last[key] else "default"))
        print("%s: %s" % (what, ", ".join(seen)))
        items = self.next_ticks(1)[0]["items"]
        shown = sum(self.soak.get(key) == "true" for key in ("persistCPU", "persistMemory",
                                                              "persistDisk", "persistFan"))
        self.assertEqual(items, shown, "%s: tray items follow what the settings read" % what)

    def write_and_keep(self, what, key, value):
        """A setting written by the program now reads back, and still does a tick later."""
        self.assertEqual(self.soak.command("set %s %s" % (key, value)), "%s=%s" % (key, value))
        self.next_ticks()
        self.assertEqual(self.soak.get(key), value, "%s: %s lost after a tick" % (what, key))

    def test_garbage_deletion_and_unwritable_file_lose_nothing_valid(self):
        self.next_ticks(1)
        for key, value in USER_VALUES.items():
            self.assertEqual(self.soak.get(key), value)

        with self.subTest(fault="garbage"):
            self.write_file(GARBAGE)
            self.next_ticks()
            self.assert_last_or_default("garbage", USER_VALUES)
            self.write_and_keep("garbage", "styleCPU", "Graph Only")
            self.assertIn("styleCPU=Graph Only", self.file_text())

        with self.subTest(fault="deleted"):
            os.remove(self.file)
            self.next_ticks()
            self.assert_last_or_default("deleted", {"styleCPU": "Graph Only"})
            self.write_and_keep("deleted", "persistDisk", "true")
            self.assertIn("persistDisk=true", self.file_text())

        # An edit by another process is picked up, and is the last value from here on.
        self.write_file(USER_FILE)
        self.next_ticks()
        for key, value in USER_VALUES.items():
            self.assertEqual(self.soak.get(key), value, "external edit")

        with self.subTest(fault="directory at the file's path"):
            os.remove(self.file)
            os.mkdir(self.file)
            self.next_ticks()
            self.assert_last_or_default("directory", USER_VALUES)
            self.write_and_keep("directory", "graphWidth", "50")
            os.rmdir(self.file)
            self.next_ticks()
            self.assertEqual(self.soak.get("graphWidth"), "50")
            landed_by_itself = "graphWidth=50" in (self.file_text() or "")
            # The next write stores the file with everything still pending.
            self.write_and_keep("directory", "persistFan", "true")
            text = self.file_text()
            self.assertIn("graphWidth=50", text)
            self.assertIn("persistFan=true", text)
            print("\ndirectory case: pending write landed %s"
                  % ("by itself" if landed_by_itself else "with the next write"))

        with self.subTest(fault="file at the folder's path"):
            shutil.rmtree(self.folder)
            with open(self.folder, "w") as blocker:
                blocker.write("not a folder\n")
            self.next_ticks()
            self.assert_last_or_default("file for folder", {"graphWidth": "50",
                                                             "persistFan": "true"})
            self.write_and_keep("file for folder", "styleMemory", "Text Only")
            os.remove(self.folder)
            os.mkdir(self.folder)
            self.next_ticks()
            self.assertEqual(self.soak.get("styleMemory"), "Text Only")
            landed_by_itself = "styleMemory=Text Only" in (self.file_text() or "")
            self.write_and_keep("file for folder", "styleDisk", "Graph Only")
            text = self.file_text()
            self.assertIn("styleMemory=Text Only", text)
            self.assertIn("styleDisk=Graph Only", text)
            print("folder case: pending write landed %s"
                  % ("by itself" if landed_by_itself else "with the next write"))

        self.assertEqual(self.soak.quit(), 0, "".join(self.soak.stderr))

    def test_a_write_made_while_unwritable_lands_once_the_file_can_be_written(self):
        """A write that failed is kept and written again on a later tick, even when the
        program makes no other write before it quits."""
        self.next_ticks()
        os.remove(self.file)
        os.mkdir(self.file)
        self.next_ticks()
        self.assertEqual(self.soak.command("set styleFan Text Only"), "styleFan=Text Only")
        os.rmdir(self.file)
        self.next_ticks()
        self.assertEqual(self.soak.quit(), 0, "".join(self.soak.stderr))
        self.assertIn("styleFan=Text Only", self.file_text() or "")


if __name__ == "__main__":
    unittest.main()
