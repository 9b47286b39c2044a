"""`cmake --install` puts a complete, valid desktop application under a prefix."""

import os
import shutil
import sys
import tempfile
import unittest

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from layout import BINARY_DIR, LayoutChecks, run  # noqa: E402


class InstalledTree(LayoutChecks, unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.prefix = tempfile.mkdtemp(prefix="vorlune-install-")
        result = run(["cmake", "--install", BINARY_DIR, "--prefix", cls.prefix])
        if result.returncode != 0:
            shutil.rmtree(cls.prefix, ignore_errors=True)
            raise RuntimeError("cmake --install failed:\n" + result.stdout + result.stderr)

    @classmethod
    def tearDownClass(cls):
        shutil.rmtree(cls.prefix, ignore_errors=True)

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


if __name__ == "__main__":
    unittest.main(verbosity=2)
