"""`vorlune --bar` as bars run it: no display, a protocol line a tick, a clean end."""

import json
import os
import subprocess
import unittest

VORLUNE = os.path.join(os.environ["VORLUNE_BINARY_DIR"], "bin", "vorlune")
NO_DISPLAY = {key: value for key, value in os.environ.items()
              if key not in ("DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM")}


class BarMode(unittest.TestCase):
    def run_bar(self, *arguments, lines=3, hang_up=False):
        with subprocess.Popen([VORLUNE, "--bar", *arguments], stdout=subprocess.PIPE,
                              stderr=subprocess.PIPE, text=True, env=NO_DISPLAY) as bar:
            read = [bar.stdout.readline().rstrip("\n") for _ in range(lines)]
            # Hung up on as `| head -n 3` does (the next write fails), or terminated.
            bar.stdout.close() if hang_up else bar.terminate()
            self.assertEqual(bar.wait(timeout=10), 0, bar.stderr.read())
        return read

    def test_waybar_writes_a_json_object_a_tick_and_ends_when_its_reader_goes(self):
        for line in self.run_bar("waybar", "--items", "cpu,memory", hang_up=True):
            record = json.loads(line)
            self.assertRegex(record["text"], r"^\S+ \d+%  \S+ \d+%$")
            self.assertRegex(record["tooltip"], r"^CPU: \d+%\n")

    def test_i3bar_writes_its_header_then_an_array_of_blocks(self):
        header, opening, *ticks = self.run_bar("i3bar", "--items", "cpu,cputemp", lines=4)
        self.assertEqual((json.loads(header), opening), ({"version": 1}, "["))
        for tick in ticks:
            cpu, temperature = json.loads(tick.removesuffix(","))
            self.assertEqual([cpu["name"], temperature["name"]], ["vorlune-cpu", "vorlune-cputemp"])
            self.assertRegex(cpu["full_text"], r"^\S+ \d+%$")

    def test_plain_text_and_a_wrong_command_line(self):
        [line] = self.run_bar("plain", "--items", "network", lines=1)
        self.assertRegex(line, r"^↓\S+ ↑\S+$")
        wrong = subprocess.run([VORLUNE, "--bar", "polybar"], env=NO_DISPLAY, timeout=10)
        self.assertEqual(wrong.returncode, 2)
