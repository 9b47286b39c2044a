"""The real Vorlune on Xvfb with a real tray host ($VORLUNE_TRAY_HOST: tint2 over XEmbed,
xfce over StatusNotifierItem), driven from outside as a person would."""

import os
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import unittest

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from harness import Desktop, fake_sysfs, processes, run, wait_until, write_file  # noqa: E402

BINARY_DIR = os.environ["VORLUNE_BINARY_DIR"]
VORLUNE = os.path.join(BINARY_DIR, "bin", "vorlune")
CPU, MEMORY, DISK = "#FF00FF", "#00FFFF", "#FFFF00"
PANEL_FREE = (0, 40, 1280, 720)  # both test panels sit outside this band
SETTINGS = {"persistCPU": "true", "persistMemory": "true", "persistentDisplayStyle": "Text Only",
            "cpuColorHex": CPU[1:], "memoryColorHex": MEMORY[1:], "diskColorHex": DISK[1:]}


def prefix_reading(root, sysfs):
    """Vorlune copied into a prefix of its own under `root`, whose helper reads `sysfs`:
    the program's path and the helper's script."""
    wrapper = (f'#!/bin/sh\nexec "{os.path.join(BINARY_DIR, "SMCHelper", "smc_helper")}" '
               f'"$@" --sysfs-root "{sysfs}"\n')
    program = os.path.join(root, "bin", "vorlune")
    os.makedirs(os.path.dirname(program))
    shutil.copy2(VORLUNE, program)
    write_file(os.path.join(root, "libexec", "vorlune", "smc_helper"), wrapper, 0o755)
    return program, wrapper


class Session(unittest.TestCase):
    """Vorlune started on a fresh desktop with the CPU and memory items in marker colours."""

    def setUp(self):
        self.start_vorlune()
        # A loaded machine (the sanitizer build beside it) can take a while to start it.
        self.cpu = self.wait_for(CPU, "start", timeout=40)
        self.assertIsNotNone(self.cpu, "the CPU item is drawn in its colour; the watcher holds "
                             + self.desktop.tray_items())

    def start_vorlune(self):
        host = os.environ.get("VORLUNE_TRAY_HOST", "tint2")
        self.desktop = Desktop(host, os.path.join(BINARY_DIR, "screenshots", "e2e",
                                                  f"{self._testMethodName}-{host}"))
        self.addCleanup(self.desktop.close)
        self.desktop.start_tray_host()
        self.desktop.write_settings(SETTINGS)
        # What the app says goes beside the screenshots, for a failure seen only on CI.
        log = open(os.path.join(self.desktop.artifacts, "vorlune.log"), "w")
        self.addCleanup(log.close)
        self.vorlune = self.desktop.spawn([VORLUNE], stderr=log)

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
        # Under the item on a top panel, above it on a bottom one, and across its middle.
        [(left, top, popover_width, popover_height)] = self.window("^Vorlune: CPU$")
        self.assertTrue(top >= y + height - 4 or top + popover_height <= y + 4, (top, y))
        self.assertLessEqual(left, x + width // 2)
        self.assertLessEqual(x + width // 2, left + popover_width)
        self.desktop.click(640, 300)
        time.sleep(1.5)
        closed = self.desktop.screenshot("popover-closed")
        self.assertLess(self.desktop.changed_pixels(before, closed), 5000, "the popover closed")

        self.desktop.panel.kill()
        self.desktop.panel.wait()
        time.sleep(1.0)
        self.desktop.start_panel()
        self.assertTrue(self.wait_for(CPU, "host-restarted", timeout=25), "the CPU item is back")

        # Quit while the serving helper runs: it must end with Vorlune.
        wait_until(lambda: processes("smc_helper", self.desktop.runtime), 5, 0.05)
        self.vorlune.send_signal(signal.SIGTERM)
        self.assertEqual(self.vorlune.wait(timeout=15), 0)
        for colour in (CPU, MEMORY):
            self.assertTrue(self.wait_for(colour, "quit", present=False, timeout=5), colour)
        time.sleep(2.5)
        self.assertEqual(processes("smc_helper", self.desktop.runtime), [], "a helper is left")


class WholeApp(Session):
    def test_an_item_follows_its_style_written_by_another_process(self):
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


class FanStory(unittest.TestCase):
    """Manual fan control as a person meets it, on a fake board: switched on from the fan
    popover, the daemon killed, the popover opened again."""

    FAN = "#00FF80"

    def fake_board(self, root):
        sysfs = os.path.join(root, "sysfs")
        chips = {"platform/coretemp.0/hwmon/hwmon1": dict(name="coretemp", temp1_input="45000",
                                                           temp1_label="Package id 0"),
                 "platform/nct6775.656/hwmon/hwmon2": dict(name="nct6775", fan1_input="1200",
                                                            pwm1="100", pwm1_enable="5")}
        fake_sysfs(sysfs, chips)
        return sysfs, os.path.join(sysfs, "sys/devices", "platform/nct6775.656/hwmon/hwmon2")

    def test_a_killed_daemon_is_reported_and_its_fans_come_back(self):
        root = tempfile.mkdtemp(prefix="vorlune-fans-")
        self.addCleanup(shutil.rmtree, root, True)
        sysfs, board = self.fake_board(root)
        def fan(name):
            with open(os.path.join(board, name)) as attribute:
                return attribute.read().strip()
        # The set-user-ID copy reads the board too.
        program, wrapper = prefix_reading(root, sysfs)
        installed = os.path.join(root, "setuid", "vorlune_smc_helper")
        write_file(installed, wrapper, 0o4755)

        desktop = Desktop("tint2", os.path.join(BINARY_DIR, "screenshots", "e2e", "fan-story"))
        self.addCleanup(desktop.close)
        desktop.start_tray_host()
        desktop.env["VORLUNE_INSTALLED_HELPER"] = installed
        desktop.write_settings({"persistFan": "true", "fanColorHex": self.FAN[1:],
                                "persistentDisplayStyle": "Text Only"})
        desktop.spawn([program])
        item = wait_until(lambda: desktop.find_colour(desktop.screenshot("item"), self.FAN), 15)
        self.assertIsNotNone(item, "the fan item is drawn")

        def open_popover(name):
            desktop.click(item[0] + item[2] // 2, item[1] + item[3] // 2)
            found = wait_until(lambda: desktop.windows("--name", "^Vorlune: Fan$"), 10)
            self.assertTrue(found, "the fan popover opens")
            time.sleep(1.0)
            desktop.screenshot(name)
            return found[0]

        x, y, width, height = open_popover("popover")
        # The switch sits at the right end of the "Manual Fan Override" line.
        desktop.click(x + width - 32, y + 115)
        self.assertTrue(wait_until(lambda: fan("pwm1_enable") == "1", 15), "the fan is manual")
        self.assertTrue(wait_until(lambda: desktop.windows("--name", "^Vorlune: Fan$")[0][3] >
                                   height, 5), "the popover grows to show the slider")
        self.assertEqual(fan("pwm1"), "51", "held at 20 %, no lower")
        desktop.screenshot("manual")

        [daemon] = processes("--daemon\0--sysfs-root\0" + sysfs)
        os.kill(daemon, signal.SIGKILL)
        self.assertTrue(wait_until(lambda: (fan("pwm1_enable"), fan("pwm1")) == ("5", "100"), 15),
                        "the next tick hands the fan back")
        desktop.click(640, 400)  # closes the popover
        time.sleep(1.0)
        x, y, width, height = open_popover("reopened")
        shot = desktop.crop(desktop.screenshot("reopened-message"), (x, y, width, height))
        big = shot.replace(".png", "-x3.png")
        run(["convert", shot, "-scale", "300%", "-colorspace", "gray", big], check=True)
        text = " ".join(run(["tesseract", big, "-"]).stdout.split())
        self.assertIn("Manual control stopped", text)
        self.assertIn("handed back to automatic control", text)


class Strip(unittest.TestCase):
    """Eight reading items and the main one in "Graph & Text" on the host's panel, light and
    dark: the README's panel pictures are these crops."""

    def test_every_item_stands_in_a_light_and_a_dark_panel(self):
        host = os.environ.get("VORLUNE_TRAY_HOST", "tint2")
        items = ["persistCPU", "persistMemory", "persistDisk", "persistNetwork", "networkCombined",
                 "persistCPUTemp", "persistGPUTemp", "persistFan"]
        # tint2 on Xvfb draws no panel background whatever its colour, and a dark MATE
        # panel needs a dark theme for its label text, not a colour: one strip each.
        shades = {"tint2": ("dark",), "mate": ("light",)}.get(host, ("light", "dark"))
        for shade in shades:
            with self.subTest(shade=shade):
                desktop = Desktop(host, os.path.join(BINARY_DIR, "screenshots", "panels"), shade)
                self.addCleanup(desktop.close)
                desktop.start_tray_host()
                desktop.write_settings({item: "true" for item in items})
                empty = desktop.crop(desktop.screenshot(f"{shade}-empty"), desktop.TRAY_END[host])
                desktop.spawn([VORLUNE])
                time.sleep(8)  # a few samples, so the graphs have a line to show
                strip = desktop.crop(desktop.screenshot(shade), desktop.TRAY_END[host])
                # MATE draws the labels only (no icons on Xvfb): a few dozen pixels an item.
                self.assertGreater(desktop.changed_pixels(empty, strip), 8 * 40)
                print("panel strip:", strip)
                desktop.close()


class Notifier(Session):
    """StatusNotifierItem hosts: every item is a bus object of its own, read and driven
    over D-Bus as the host does."""

    def setUp(self):
        self.start_vorlune()

    def bus(self, service, path, method, *args):
        return run(["gdbus", "call", "--session", "-d", service, "-o", path, "-m", method,
                    *args], env=self.desktop.env).stdout

    def registered(self):
        return re.findall(r'string "([^"]+)"', self.desktop.tray_items())

    def items(self, count):
        """Id -> (bus address, properties) once `count` items are registered."""
        self.assertTrue(wait_until(lambda: len(self.registered()) == count, 20, 0.25),
                        f"{count} items registered, not {self.registered()}")
        found = {}
        for address in self.registered():
            service, path = address.split("/", 1)
            answer = self.bus(service, "/" + path, "org.freedesktop.DBus.Properties.GetAll",
                              "org.kde.StatusNotifierItem")
            props = dict(re.findall(r"'(\w+)': <'([^']*)'>", answer))
            props["ToolTip"] = re.search(r"'ToolTip': <\('', @?a?\(?iiay\)? ?\[\], '([^']*)', "
                                         r"'([^']*)'\)>", answer).groups()
            found[props["Id"]] = (service, "/" + path, props)
        return found

    def call(self, item, method, x, y):
        service, path, _ = item
        self.bus(service, path, "org.kde.StatusNotifierItem." + method, str(x), str(y))

    def test_named_items_open_at_the_click_survive_a_panel_restart_and_quit(self):
        items = wait_until(lambda: self.items(3), 5)
        self.assertEqual(set(items), {"vorlune", "vorlune-cpu", "vorlune-memory"})
        for item_id, (_, _, props) in items.items():
            self.assertEqual(props["Category"], "Hardware", item_id)
        self.assertEqual({props["Title"] for _, _, props in items.values()},
                         {"Vorlune", "Vorlune CPU", "Vorlune Memory"})
        # Text beside the icon only where the host draws it: MATE here, xfce4-panel not.
        beside = self.desktop.host == "mate"
        for item_id, name in (("vorlune-cpu", "CPU"), ("vorlune-memory", "Memory")):
            # gdbus shows a line feed in a string as "\n".
            lines = lambda: self.items(3)[item_id][2]["ToolTip"][1].split("\\n")
            props = wait_until(lambda: self.items(3)[item_id][2]
                               if re.fullmatch(r"\d+%", lines()[0]) else None, 10)
            self.assertTrue(props, f"{name}'s tooltip carries its value text")
            self.assertEqual(props["ToolTip"][0], name)
            value, *more = props["ToolTip"][1].split("\\n")
            self.assertEqual(props["XAyatanaLabel"], value if beside else "")
            if name == "CPU":
                self.assertRegex(more[0], r"^Busiest core: CPU \d+ .+ \d+%$")
        if beside:
            time.sleep(2.5)
            shot = self.desktop.crop(self.desktop.screenshot("labels"), (800, 0, 480, 30))
            big = shot.replace(".png", "-x4.png")
            run(["convert", shot, "-scale", "400%", "-colorspace", "gray", big], check=True)
            text = run(["tesseract", big, "-"]).stdout
            # MATE on Xvfb draws no icons, so the two labels abut ("59%0%") and OCR may
            # read them as one; the labels' texts were read over D-Bus above.
            self.assertRegex(text, r"\d+ ?%", "the labels stand in the panel")

        # A click at x = 1000 opens the CPU popover centred there, under the panel.
        self.call(items["vorlune-cpu"], "Activate", 1000, 10)
        self.assertTrue(self.window("^Vorlune: CPU$"), "the CPU popover opened")
        self.assertEqual(self.items(3)["vorlune-cpu"][2]["ToolTip"], ("", ""),
                         "no tooltip covers the open popover")
        x, y, width, _ = self.desktop.windows("--name", "^Vorlune: CPU$")[0]
        self.assertLessEqual(abs(x + width // 2 - 1000), 2)
        self.assertGreaterEqual(y, 20, "below the panel, not over it")
        self.desktop.screenshot("popover-at-click")
        run(["xdotool", "key", "Escape"], env=self.desktop.env)

        self.desktop.panel.kill()
        self.desktop.panel.wait()
        self.desktop.start_panel()
        self.assertEqual(set(self.items(3)), set(items), "every item back once")

        self.call(self.items(3)["vorlune"], "ContextMenu", 1100, 10)
        menus = wait_until(lambda: self.desktop.windows("--class", "vorlune"), 10)
        self.assertTrue(menus, "the menu opened")
        self.desktop.screenshot("menu")
        x, y, width, height = menus[0]
        self.desktop.click(x + width // 2, y + height - 10)  # "Quit Vorlune", the last entry
        self.assertEqual(self.vorlune.wait(timeout=15), 0)
        self.assertTrue(wait_until(lambda: not self.registered(), 10), "no item outlives Vorlune")


if __name__ == "__main__":
    unittest.main(verbosity=2)


class Alerts(unittest.TestCase):
    """A CPU at 95 °C on a fake board, told through a real notification server (dunst) on
    the session's bus; its action opens the CPU temperature's detail."""

    def test_a_hot_cpu_is_a_desktop_notification_that_opens_its_detail(self):
        root = tempfile.mkdtemp(prefix="vorlune-alerts-")
        self.addCleanup(shutil.rmtree, root, True)
        sysfs = os.path.join(root, "sysfs")
        fake_sysfs(sysfs, {"platform/coretemp.0/hwmon/hwmon1": dict(
            name="coretemp", temp1_input="95000", temp1_label="Package id 0")})
        program, _ = prefix_reading(root, sysfs)
        desktop = Desktop("xfce", os.path.join(BINARY_DIR, "screenshots", "e2e", "alerts"))
        self.addCleanup(desktop.close)
        desktop.start_tray_host()
        calls = os.path.join(desktop.artifacts, "notifications.log")
        with open(calls, "w") as log:
            desktop.spawn(["dbus-monitor", "--session",
                           "interface=org.freedesktop.Notifications"], stdout=log)
        desktop.spawn(["dunst"])
        desktop.write_settings({"alertCPUTemp": "true", "alertCPUTempSeconds": "0"})
        desktop.spawn([program])

        def told():
            with open(calls) as log:
                return 'string "CPU at 95 °C"' in log.read()
        self.assertTrue(wait_until(told, 20, 0.5), "Notify was called with the summary")
        self.assertTrue(wait_until(lambda: run(["dunstctl", "count", "displayed"],
                                               env=desktop.env).stdout.strip() == "1", 10),
                        "dunst shows it")
        desktop.screenshot("notification")
        run(["dunstctl", "action", "0"], env=desktop.env, check=True)
        self.assertTrue(wait_until(lambda: desktop.windows("--name", "CPU Temp"), 10),
                        "its action opens the CPU temperature's detail")
        desktop.screenshot("detail")
