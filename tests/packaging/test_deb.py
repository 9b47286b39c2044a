"""`cpack -G DEB` builds a package that unpacks into a working Vorlune."""

import glob
import json
import os
import re
import shutil
import signal
import sys
import tempfile
import unittest

HERE = os.path.dirname(os.path.abspath(__file__))
sys.path.insert(0, HERE)
sys.path.insert(0, os.path.join(HERE, "..", "e2e"))
from harness import Desktop, wait_until  # noqa: E402
from layout import APP, BINARY_DIR, HELPER, VERSION, LayoutChecks, files_under, run  # noqa: E402

QT_RUNTIME = ("libqt6core6", "libqt6gui6", "libqt6widgets6", "libqt6svg6", "libqt6dbus6",
              "libqt6network6", "qt6-qpa-plugins")


def package_names(relationship):
    """The first package named in each clause of a Depends-style field."""
    return [re.match(r"\s*([a-z0-9][a-z0-9+.-]*)", clause).group(1)
            for clause in relationship.split(",") if clause.strip()]


class DebianPackage(LayoutChecks, unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.scratch = tempfile.mkdtemp(prefix="vorlune-deb-")
        output = os.path.join(cls.scratch, "out")
        result = run(["cpack", "-G", "DEB", "-B", output,
                      "--config", os.path.join(BINARY_DIR, "CPackConfig.cmake")], cwd=BINARY_DIR)
        packages = glob.glob(os.path.join(output, "*.deb"))
        if result.returncode != 0 or len(packages) != 1:
            shutil.rmtree(cls.scratch, ignore_errors=True)
            raise RuntimeError(f"cpack made {packages}:\n" + result.stdout + result.stderr)
        cls.deb = packages[0]
        cls.root = os.path.join(cls.scratch, "root")
        result = run(["dpkg-deb", "-x", cls.deb, cls.root])
        if result.returncode != 0:
            shutil.rmtree(cls.scratch, ignore_errors=True)
            raise RuntimeError("dpkg-deb -x failed:\n" + result.stderr)
        cls.prefix = os.path.join(cls.root, "usr")

    @classmethod
    def tearDownClass(cls):
        shutil.rmtree(cls.scratch, ignore_errors=True)

    def field(self, name):
        result = run(["dpkg-deb", "-f", self.deb, name])
        self.assertEqual(result.returncode, 0, result.stderr)
        return result.stdout.strip()

    def test_everything_lies_under_usr(self):
        outside = [path for path in files_under(self.root) if not path.startswith("usr/")]
        self.assertEqual(outside, [])

    def test_layout(self):
        self.check_layout()

    def test_desktop_entry(self):
        self.check_desktop_entry()

    def test_metainfo(self):
        self.check_metainfo()

    def test_icon(self):
        self.check_icon()

    def test_licences(self):
        self.check_licences()

    def test_control_fields(self):
        self.assertEqual(self.field("Package"), "vorlune")
        self.assertEqual(self.field("Version"), VERSION)
        self.assertEqual(self.field("Architecture"),
                         run(["dpkg", "--print-architecture"]).stdout.strip())
        self.assertRegex(self.field("Maintainer"), r"^[^<>]+ <[^<>@\s]+@[^<>\s]+>$")
        self.assertRegex(self.field("Description"), r"^\S.*\n \S", "a summary and a body")

        depends = package_names(self.field("Depends"))
        for package in QT_RUNTIME:
            self.assertIn(package, depends)
        self.assertEqual(len(depends), len(set(depends)), "no package is named twice")
        self.assertEqual([p for p in depends if p.endswith("-dev")], [],
                         "only run-time packages")
        self.assertEqual(package_names(self.field("Recommends")), ["fonts-symbola"])

    def test_unpacked_helper_answers(self):
        result = run([os.path.join(self.prefix, HELPER), "--all"], timeout=10)
        self.assertEqual(result.returncode, 0, result.stderr)
        answer = json.loads(result.stdout)
        self.assertIsInstance(answer.get("temperatures"), list)
        self.assertIsInstance(answer.get("fans"), list)

    def test_unpacked_app_runs_its_own_helper_and_draws_its_icon(self):
        # A copy of the unpacked tree whose helper notes each start before running
        # the real one, so even a start of a few milliseconds leaves a trace.
        root = os.path.join(self.scratch, "running")
        shutil.copytree(self.root, root, symlinks=True)
        self.addCleanup(shutil.rmtree, root, True)
        helper = os.path.join(root, "usr", HELPER)
        os.rename(helper, helper + ".real")
        starts = os.path.join(self.scratch, "helper-starts")
        with open(helper, "w") as wrapper:
            wrapper.write(f'#!/bin/sh\necho "$*" >> "{starts}"\nexec "{helper}.real" "$@"\n')
        os.chmod(helper, 0o755)

        desktop = Desktop("tint2", os.path.join(BINARY_DIR, "screenshots", "packaging"))
        self.addCleanup(desktop.close)
        desktop.start_tray_host()
        before = desktop.screenshot("deb-before")
        log = open(os.path.join(desktop.home, "vorlune.log"), "w")
        self.addCleanup(log.close)
        vorlune = desktop.spawn([os.path.join(root, "usr", APP)], stderr=log)

        def helper_starts():
            if not os.path.exists(starts):
                return []
            with open(starts) as lines:
                return lines.read().splitlines()
        # One start at launch and one per 2-second tick.
        self.assertTrue(wait_until(lambda: len(helper_starts()) >= 2, 15),
                        "the packaged app started the packaged helper")
        self.assertEqual(set(helper_starts()), {"--all"})

        window = wait_until(lambda: self.visible_window_of(desktop, vorlune.pid), 15, 0.5)
        self.assertIsNotNone(window, "the app put an icon in the tray")
        x, y, width, height = window
        self.assertGreater(y, 700, "the icon sits in the panel at the bottom of the screen")
        after = desktop.screenshot("deb-icon")
        region = f"{width}x{height}+{x}+{y}"
        drawn = desktop.changed_pixels(self.crop(before, region), self.crop(after, region))
        self.assertGreater(drawn, width * height // 10, "the icon's pixels differ from the panel")

        vorlune.send_signal(signal.SIGTERM)
        self.assertEqual(vorlune.wait(timeout=10), 0)

    def visible_window_of(self, desktop, pid):
        windows = run(["xdotool", "search", "--onlyvisible", "--pid", str(pid)],
                      env=desktop.env).stdout.split()
        if len(windows) != 1:
            return None
        geometry = dict(line.split("=", 1) for line in run(
            ["xdotool", "getwindowgeometry", "--shell", windows[0]],
            env=desktop.env).stdout.split())
        return tuple(int(geometry[key]) for key in ("X", "Y", "WIDTH", "HEIGHT"))

    def crop(self, screenshot, region):
        path = screenshot.replace(".png", f"-{region}.png")
        result = run(["convert", screenshot, "-crop", region, "+repage", path])
        self.assertEqual(result.returncode, 0, result.stderr)
        return path


if __name__ == "__main__":
    unittest.main(verbosity=2)
