#!/usr/bin/env python3
"""Runs vorlune_soak from a throw-away prefix whose helper reads a fake sysfs tree, so
every tick spawns the real smc_helper and decodes a full answer (sensors and a fan).

    run_soak.py [--ticks N] [--baseline N] [--heap-tolerance BYTES]
                [--soak PROGRAM] [--helper SMC_HELPER]

The programs default to $VORLUNE_SOAK and $VORLUNE_SMC_HELPER. Exits with the soak's
status: non-zero on growth, on a sanitizer report or on a leak.
"""

import argparse
import os
import subprocess
import sys
import time

from soak_prefix import Prefix


def sanitizer_environment():
    return {
        # Exit non-zero at the first error of either sanitizer, and at exit on a leak.
        "ASAN_OPTIONS": "detect_leaks=1:halt_on_error=1",
        "UBSAN_OPTIONS": "print_stacktrace=1:halt_on_error=1",
    }


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--ticks", type=int, default=20000)
    parser.add_argument("--baseline", type=int, default=1000)
    parser.add_argument("--heap-tolerance", type=int)
    parser.add_argument("--soak", default=os.environ.get("VORLUNE_SOAK"))
    parser.add_argument("--helper", default=os.environ.get("VORLUNE_SMC_HELPER"))
    options = parser.parse_args()
    if not options.soak or not options.helper:
        parser.error("give --soak and --helper, or set VORLUNE_SOAK and VORLUNE_SMC_HELPER")

    prefix = Prefix(options.soak, options.helper)
    try:
        settings = os.path.join(prefix.root, "config", "vorlune.conf")
        command = [prefix.program, "--ticks", str(options.ticks),
                   "--baseline", str(options.baseline), "--settings", settings]
        if options.heap_tolerance is not None:
            command += ["--heap-tolerance", str(options.heap_tolerance)]
        # Offscreen has no tray: each new item's QSystemTrayIcon warns that a signal of
        # the tray platform is missing. Forty layout flips would bury the figures.
        env = dict(os.environ, QT_QPA_PLATFORM="offscreen", LANG="C.UTF-8",
                   QT_LOGGING_RULES="qt.core.qobject.connect=false")
        env.update(sanitizer_environment())
        started = time.monotonic()
        status = subprocess.call(command, env=env)
        print("vorlune_soak exited with %d after %.1f s" % (status, time.monotonic() - started))
        return status
    finally:
        prefix.remove()


if __name__ == "__main__":
    sys.exit(main())
