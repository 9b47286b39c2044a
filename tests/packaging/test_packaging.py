"""`cmake --install` and `cpack -G DEB` give a complete, valid desktop application, and
the unpacked package runs with its own helper."""

import configparser
import glob
import json
import os
import re
import shlex
import shutil
import signal
import stat
import sys
import tempfile
import unittest
import xml.etree.ElementTree as ElementTree

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "e2e"))
from harness import Desktop, run, wait_until  # noqa: E402

BINARY_DIR = os.environ["VORLUNE_BINARY_DIR"]
SOURCE_DIR = os.environ["VORLUNE_SOURCE_DIR"]
VERSION = os.environ["VORLUNE_VERSION"]
APP, HELPER = "bin/vorlune", "libexec/vorlune/smc_helper"
DESKTOP_FILE = "share/applications/vorlune.desktop"
ICON = "share/icons/hicolor/scalable/apps/vorlune.svg"
METAINFO = "share/metainfo/io.github.orrindale.vorlune.metainfo.xml"
LICENCES = {"share/doc/vorlune/LICENSE": "LICENSE",
            "share/doc/vorlune/LICENSE-lucide.txt": "src/tray/resources/icons/LICENSE-lucide.txt"}
QT_RUNTIME = ("libqt6core6", "libqt6gui6", "libqt6widgets6", "libqt6dbus6", "qt6-qpa-plugins")
# Left out to keep the app light: it reads its icons and answers a second start itself.
QT_NOT_LOADED = ("libqt6svg6", "libqt6network6")


APPSTREAM_ISSUE = r"(?m)^\s*[EWIP]: "


def files_under(root):
    return {os.path.relpath(os.path.join(directory, name), root)
            for directory, _, names in os.walk(root) for name in names}


def read(path, mode="r"):
    with open(path, mode) as file:
        return file.read()


class InstalledChecks:
    """Mixed into a TestCase whose `prefix` is an installed tree."""

    def test_layout(self):
        self.assertEqual(files_under(self.prefix),
                         {APP, HELPER, DESKTOP_FILE, ICON, METAINFO, *LICENCES})
        for path in files_under(self.prefix):
            mode = os.lstat(os.path.join(self.prefix, path)).st_mode
            self.assertTrue(stat.S_ISREG(mode), path)
            if path in (APP, HELPER):
                self.assertEqual(mode & 0o755, 0o755, f"{path} is executable by everyone")
                self.assertEqual(read(os.path.join(self.prefix, path), "rb")[:4], b"\x7fELF")
            else:
                self.assertEqual(mode & 0o777, 0o644, path)

    def assert_clean(self, issue, *validator):
        result = run(validator)
        self.assertEqual(result.returncode, 0, result.stdout + result.stderr)
        self.assertNotRegex(result.stdout, issue, "no issue at any level")

    def test_desktop_entry(self):
        path = os.path.join(self.prefix, DESKTOP_FILE)
        self.assert_clean(r"\S", "desktop-file-validate", path)
        entry = configparser.ConfigParser(interpolation=None)
        entry.optionxform = str
        entry.read(path)
        section = entry["Desktop Entry"]
        self.assertEqual("bin/" + shlex.split(section["Exec"])[0], APP)
        self.assertEqual(os.path.join(os.path.dirname(ICON), section["Icon"] + ".svg"), ICON)

    def test_metainfo(self):
        path = os.path.join(self.prefix, METAINFO)
        # The tree check also follows the metainfo to the desktop entry and the icon.
        for check, target in (("validate", path), ("validate-tree", self.prefix)):
            self.assert_clean(APPSTREAM_ISSUE, "appstreamcli", check, "--no-net", "--pedantic",
                              target)
        component = ElementTree.parse(path).getroot()
        self.assertEqual(os.path.basename(path), component.findtext("id") + ".metainfo.xml")
        self.assertEqual(component.findtext("launchable[@type='desktop-id']"),
                         os.path.basename(DESKTOP_FILE))
        self.assertEqual(component.findtext("provides/binary"), os.path.basename(APP))
        self.assertEqual(component.find("releases/release").get("version"), VERSION,
                         "the newest release in the metainfo is the version being built")

    def test_licences(self):
        for installed, source in LICENCES.items():
            self.assertEqual(read(os.path.join(self.prefix, installed)),
                             read(os.path.join(SOURCE_DIR, source)), installed)


class InstalledTree(InstalledChecks, unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.prefix = tempfile.mkdtemp(prefix="vorlune-install-")
        cls.addClassCleanup(shutil.rmtree, cls.prefix, True)
        run(["cmake", "--install", BINARY_DIR, "--prefix", cls.prefix], check=True)


class DebianPackage(InstalledChecks, unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.scratch = tempfile.mkdtemp(prefix="vorlune-deb-")
        cls.addClassCleanup(shutil.rmtree, cls.scratch, True)
        output = os.path.join(cls.scratch, "out")
        run(["cpack", "-G", "DEB", "-B", output, "--config",
             os.path.join(BINARY_DIR, "CPackConfig.cmake")], cwd=BINARY_DIR, check=True)
        [cls.deb] = glob.glob(os.path.join(output, "*.deb"))
        cls.root = os.path.join(cls.scratch, "root")
        run(["dpkg-deb", "-x", cls.deb, cls.root], check=True)
        cls.prefix = os.path.join(cls.root, "usr")

    def field(self, name):
        return run(["dpkg-deb", "-f", self.deb, name], check=True).stdout.strip()

    def test_everything_lies_under_usr(self):
        self.assertEqual([p for p in files_under(self.root) if not p.startswith("usr/")], [])

    def test_control_fields(self):
        self.assertEqual(self.field("Version"), VERSION)
        self.assertEqual(self.field("Architecture"),
                         run(["dpkg", "--print-architecture"], check=True).stdout.strip())
        self.assertRegex(self.field("Maintainer"), r"^[^<>]+ <[^<>@\s]+@[^<>\s]+>$")
        self.assertRegex(self.field("Description"), r"^\S.*\n \S", "a summary and a body")
        # The first package of each clause.
        depends = re.findall(r"(?:^|,)\s*([a-z0-9][a-z0-9+.-]*)", self.field("Depends"))
        self.assertLessEqual(set(QT_RUNTIME), set(depends))
        self.assertFalse(set(QT_NOT_LOADED) & set(depends))
        self.assertEqual(len(depends), len(set(depends)), "no package is named twice")
        self.assertEqual([p for p in depends if p.endswith("-dev")], [], "only run-time packages")

    def test_removal_takes_the_set_user_id_helper_with_it_and_an_upgrade_does_not(self):
        scripts = os.path.join(self.scratch, "control")
        run(["dpkg-deb", "-e", self.deb, scripts], check=True)
        for action, kept in [("upgrade", True), ("remove", False), ("purge", False)]:
            root = tempfile.mkdtemp(dir=self.scratch)
            helper = os.path.join(root, "usr/local/bin/vorlune_smc_helper")
            os.makedirs(os.path.dirname(helper))
            open(helper, "w").close()
            result = run([os.path.join(scripts, "postrm"), action],
                         env=dict(os.environ, DPKG_ROOT=root))
            self.assertEqual(result.returncode, 0, action)
            self.assertEqual(os.path.exists(helper), kept, action)

    def test_unpacked_app_runs_its_own_helper_and_draws_its_icon(self):
        # A copy of the tree whose helper notes each start before running the real one,
        # so even a start of a few milliseconds leaves a trace.
        root = os.path.join(self.scratch, "running")
        shutil.copytree(self.root, root, symlinks=True)
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
        vorlune = desktop.spawn([os.path.join(root, "usr", APP)])
        started = lambda: os.path.exists(starts) and read(starts).splitlines()
        # Started once, serving every tick.
        self.assertTrue(wait_until(lambda: len(started() or []) >= 1, 15), "the helper ran")
        self.assertEqual(set(started()), {"--serve"})
        self.assertIn("temperatures", json.loads(run([helper + ".real", "--all"]).stdout))

        windows = wait_until(lambda: desktop.windows("--pid", str(vorlune.pid)), 15, 0.5)
        self.assertEqual(len(windows), 1, "the app put one icon in the tray")
        x, y, width, height = region = windows[0]
        self.assertGreater(y, 700, "the icon sits in the panel at the bottom of the screen")
        drawn = desktop.changed_pixels(desktop.crop(before, region),
                                       desktop.crop(desktop.screenshot("deb-icon"), region))
        self.assertGreater(drawn, width * height // 10, "the icon's pixels differ from the panel")
        vorlune.send_signal(signal.SIGTERM)
        self.assertEqual(vorlune.wait(timeout=10), 0)


if __name__ == "__main__":
    unittest.main(verbosity=2)
