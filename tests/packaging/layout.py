"""What an installed Vorlune tree holds, and the checks both packaging tests share."""

import configparser
import os
import shlex
import stat
import subprocess
import xml.etree.ElementTree as ElementTree

BINARY_DIR = os.environ["VORLUNE_BINARY_DIR"]
SOURCE_DIR = os.environ["VORLUNE_SOURCE_DIR"]
VERSION = os.environ["VORLUNE_VERSION"]

APP = "bin/vorlune"
HELPER = "libexec/vorlune/smc_helper"
DESKTOP_FILE = "share/applications/vorlune.desktop"
ICON = "share/icons/hicolor/scalable/apps/vorlune.svg"
METAINFO = "share/metainfo/io.github.orrindale.vorlune.metainfo.xml"
LICENSE = "share/doc/vorlune/LICENSE"
ICON_LICENSE = "share/doc/vorlune/LICENSE-lucide.txt"

EXECUTABLES = (APP, HELPER)
EXPECTED_FILES = frozenset((APP, HELPER, DESKTOP_FILE, ICON, METAINFO, LICENSE, ICON_LICENSE))


def files_under(root):
    """Every file and symbolic link below `root`, as paths relative to it."""
    found = set()
    for directory, _, names in os.walk(root):
        for name in names:
            found.add(os.path.relpath(os.path.join(directory, name), root))
    return found


def run(argv, **kwargs):
    return subprocess.run(argv, capture_output=True, text=True, **kwargs)


class LayoutChecks:
    """Mixed into a unittest.TestCase whose `prefix` is an installed tree."""

    def check_layout(self):
        self.assertEqual(files_under(self.prefix), EXPECTED_FILES)
        for path in EXECUTABLES:
            full = os.path.join(self.prefix, path)
            mode = os.stat(full).st_mode
            self.assertTrue(stat.S_ISREG(mode), path)
            self.assertEqual(mode & 0o755, 0o755, f"{path} is executable by everyone")
            with open(full, "rb") as binary:
                self.assertEqual(binary.read(4), b"\x7fELF", f"{path} is a program")
        for path in EXPECTED_FILES - set(EXECUTABLES):
            self.assertEqual(os.stat(os.path.join(self.prefix, path)).st_mode & 0o777, 0o644,
                             path)

    def check_desktop_entry(self):
        path = os.path.join(self.prefix, DESKTOP_FILE)
        result = run(["desktop-file-validate", path])
        self.assertEqual(result.returncode, 0, result.stdout + result.stderr)
        self.assertEqual(result.stdout.strip(), "", "no warnings or hints")

        entry = configparser.ConfigParser(interpolation=None)
        entry.optionxform = str
        entry.read(path)
        section = entry["Desktop Entry"]
        self.assertEqual(section["Type"], "Application")
        program = shlex.split(section["Exec"])[0]
        self.assertTrue(os.path.isfile(os.path.join(self.prefix, "bin", program)),
                        f"Exec names the installed program, not {program}")
        self.assertEqual(os.path.join("share/icons/hicolor/scalable/apps",
                                      section["Icon"] + ".svg"), ICON)
        self.assertIn("System", section["Categories"].split(";"))

    def check_metainfo(self):
        path = os.path.join(self.prefix, METAINFO)
        result = run(["appstreamcli", "validate", "--no-net", "--pedantic", path])
        self.assertEqual(result.returncode, 0, result.stdout + result.stderr)
        self.assertNotRegex(result.stdout, r"(?m)^\s*[EWIP]: ", "no issue at any level")
        # The tree check also finds the desktop entry and the icon the metainfo leads to.
        tree = run(["appstreamcli", "validate-tree", "--no-net", "--pedantic", self.prefix])
        self.assertEqual(tree.returncode, 0, tree.stdout + tree.stderr)
        self.assertNotRegex(tree.stdout, r"(?m)^\s*[EWIP]: ", "no issue at any level")

        component = ElementTree.parse(path).getroot()
        component_id = component.findtext("id")
        self.assertEqual(os.path.basename(path), component_id + ".metainfo.xml")
        self.assertEqual(component.get("type"), "desktop-application")
        self.assertEqual(component.findtext("launchable[@type='desktop-id']"),
                         os.path.basename(DESKTOP_FILE))
        self.assertEqual(component.findtext("provides/binary"), os.path.basename(APP))
        self.assertEqual(component.findtext("project_license"), "MIT")
        newest = component.find("releases/release")
        self.assertIsNotNone(newest, "the metainfo lists its releases")
        self.assertEqual(newest.get("version"), VERSION,
                         "the newest release in the metainfo is the version being built")

    def check_icon(self):
        svg = ElementTree.parse(os.path.join(self.prefix, ICON)).getroot()
        self.assertEqual(svg.tag, "{http://www.w3.org/2000/svg}svg")
        x, y, width, height = (float(v) for v in svg.get("viewBox").split())
        self.assertEqual((x, y), (0.0, 0.0))
        self.assertEqual(width, height, "application icons are square")
        self.assertGreaterEqual(len(svg.findall(".//{http://www.w3.org/2000/svg}path")), 1)

    def check_licences(self):
        with open(os.path.join(self.prefix, LICENSE)) as ours:
            text = ours.read()
        self.assertTrue(text.startswith("MIT License"))
        self.assertIn("Copyright (c) 2026 Orrindale", text)
        with open(os.path.join(SOURCE_DIR, "src/resources/icons/LICENSE-lucide.txt")) as source, \
                open(os.path.join(self.prefix, ICON_LICENSE)) as installed:
            self.assertEqual(installed.read(), source.read())
