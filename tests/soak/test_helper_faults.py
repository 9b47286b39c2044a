"""The helper swapped for broken ones while the application samples on its own timer.

Each broken helper must give the empty readings (0 degrees, no sensors, no
fans) without bending the 2-second rhythm or leaving anything behind; the good helper
put back must give real readings again.
"""

import os
import time
import unittest

from soak_prefix import (GOOD_FAN_COUNT, GOOD_GPU_TEMPERATURE, GOOD_SENSOR_COUNT,
                         GOOD_TEMPERATURE, Prefix, RunningSoak)

PERIOD = 2.0
# The first sample after a swap may come from a job started before it.
SAMPLES_PER_PHASE = 4
# Scheduling on a busy two-core machine moves a tick by tens of milliseconds.
RHYTHM_SLACK = 0.4

# Starts an answer, then never ends; a shell that waits on its own children, so the
# kill has to reach the whole group.
HANG = """printf '{"temperatures": ['
while :; do sleep 1; done"""
# Half an answer, then a segmentation fault.
CRASH = """printf '{"temperatures": [{"key": "TC0D", "label": "CPU Die", "value": 7'
kill -SEGV $$"""
# Invalid UTF-8, NULs and a well-formed object followed by junk.
GARBAGE = r"""printf '\377\376\000{"temperatures": [{"label": "CPU Die", "value": 99}]}\n'
printf ']]} not json {{ "fans": 12\n'"""


def megabyte_then_answer(prefix):
    """A real answer with a megabyte of blanks after its opening brace: valid JSON,
    but it cannot fit in the pipe the application reads only after the exit."""
    return ("printf '{'\nhead -c 1048576 /dev/zero | tr '\\000' ' '\n%s | tail -c +2"
            % prefix.good_answer_command())


class HelperFaultsTest(unittest.TestCase):
    def setUp(self):
        self.prefix = Prefix.from_environment()
        self.addCleanup(self.prefix.remove)
        config = os.path.join(self.prefix.root, "config")
        os.makedirs(config)
        settings = os.path.join(config, "vorlune.conf")
        with open(settings, "w") as file:
            file.write("[General]\npersistCPU=true\npersistCPUTemp=true\n"
                       "persistGPUTemp=true\npersistFan=true\n")
        self.soak = RunningSoak(self.prefix, settings)
        self.addCleanup(self.soak.kill)

    def phase(self, name, install):
        install()
        swapped = time.monotonic()
        samples = self.soak.samples_after(swapped, SAMPLES_PER_PHASE,
                                          timeout=SAMPLES_PER_PHASE * PERIOD + 10)
        self.assertEqual(len(samples), SAMPLES_PER_PHASE,
                         "%s: sampling stopped; stderr: %s" % (name, "".join(self.soak.stderr)))
        settled = samples[1:]
        print("%-10s %s" % (name, "  ".join(
            "t=%.3f temp=%g sensors=%d fans=%d fds=%d threads=%d" % (
                s["t"], s["temp"], s["sensors"], s["fans"], s["fds"], s["threads"])
            for s in settled)))
        for earlier, later in zip(settled, settled[1:]):
            self.assertAlmostEqual(later["t"] - earlier["t"], PERIOD, delta=RHYTHM_SLACK,
                                   msg="%s: samples %.3f and %.3f" % (name, earlier["t"],
                                                                      later["t"]))
        for sample in samples:
            self.assertEqual(sample["children"], 0, "%s: a helper was left unreaped" % name)
        return settled

    def assert_readings(self, name, samples, temperature, gpu, sensors, fans):
        for sample in samples:
            self.assertEqual(
                (sample["temp"], sample["gpu"], sample["sensors"], sample["fans"]),
                (temperature, gpu, sensors, fans), name)

    def assert_no_helper_left(self, name):
        # A healthy run lasts milliseconds; one still there after a second was left behind.
        deadline = time.monotonic() + 1.0
        while self.prefix.helper_processes() and time.monotonic() < deadline:
            time.sleep(0.05)
        self.assertEqual(self.prefix.helper_processes(), [], "%s: helper processes left" % name)

    def test_sampling_survives_every_broken_helper(self):
        print()
        self.assertEqual(self.soak.helper_path, self.prefix.helper)
        good = (GOOD_TEMPERATURE, GOOD_GPU_TEMPERATURE, GOOD_SENSOR_COUNT, GOOD_FAN_COUNT)
        empty = (0.0, 0.0, 0, 0)

        first = self.phase("good", self.prefix.install_good_helper)
        self.assert_readings("good", first, *good)

        broken = [
            ("hang", lambda: self.prefix.install_helper(HANG)),
            ("crash", lambda: self.prefix.install_helper(CRASH)),
            ("garbage", lambda: self.prefix.install_helper(GARBAGE)),
            ("megabyte", lambda: self.prefix.install_helper(megabyte_then_answer(self.prefix))),
        ]
        for name, install in broken:
            with self.subTest(helper=name):
                samples = self.phase(name, install)
                self.assert_readings(name, samples, *empty)
                self.assert_no_helper_left(name)

        last = self.phase("good again", self.prefix.install_good_helper)
        self.assert_readings("good again", last, *good)
        self.assert_no_helper_left("good again")

        for sample in self.soak.samples_after(first[0]["t"] - 0.001, 1000, timeout=0):
            for figure in ("fds", "threads"):
                self.assertEqual(sample[figure], first[0][figure],
                                 "%s at %.3f" % (figure, sample["t"]))

        # Every period gave one sample: none skipped, none doubled, over the whole run.
        samples = self.soak.samples
        periods = (samples[-1]["t"] - samples[0]["t"]) / PERIOD
        self.assertEqual(len(samples) - 1, round(periods),
                         "%d samples over %.1f periods" % (len(samples), periods))

        self.assertEqual(self.soak.quit(), 0, "".join(self.soak.stderr))


if __name__ == "__main__":
    unittest.main()
