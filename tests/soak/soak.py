#!/usr/bin/env python3
"""vorlune_soak ($VORLUNE_SOAK) from a throw-away prefix whose helper runs the real one
($VORLUNE_SMC_HELPER) over a fake sysfs tree. As a program, the long soak: soak.py [TICKS
[BASELINE [HEAP_TOLERANCE]]]. As tests, the program keeps its rhythm, leaves nothing behind
and loses nothing valid while another hand breaks its helper or its settings file."""

import os
import queue
import shutil
import subprocess
import sys
import tempfile
import threading
import time
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "e2e"))
from harness import fake_sysfs, processes, wait_until, write_file  # noqa: E402

# A coretemp CPU and a runtime-active amdgpu card with one fan, as the kernel lays them out;
# through the helper and the app they read as (temperature, GPU temperature, sensors, fans).
CHIPS = {
    "platform/coretemp.0/hwmon/hwmon2": dict(
        name="coretemp", temp1_input="61000", temp1_label="Package id 0", temp2_input="58000",
        temp2_label="Core 0", temp3_input="59500", temp3_label="Core 1"),
    "pci0000:00/0000:00:03.1/0000:0a:00.0/hwmon/hwmon0": dict(
        name="amdgpu", temp1_input="47000", temp1_label="edge", fan1_input="1500",
        fan1_min="0", fan1_max="3300", fan1_target="1500", pwm1="90", pwm1_enable="2"),
}
GOOD = (61.0, 47.0, 4, 1)


class Prefix:
    """vorlune_soak copied to <root>/bin: it looks for its helper at
    <root>/libexec/vorlune/smc_helper, where the tests put scripts in its place."""

    def __init__(self):
        self.root = tempfile.mkdtemp(prefix="vorlune-soak-")
        self.program = os.path.join(self.root, "bin", "vorlune_soak")
        self.helper = os.path.join(self.root, "libexec", "vorlune", "smc_helper")
        os.makedirs(os.path.dirname(self.program))
        shutil.copy2(os.environ["VORLUNE_SOAK"], self.program)
        sysfs = os.path.join(self.root, "sysfs")
        fake_sysfs(sysfs, CHIPS)
        self.good_answer = '"%s" --sysfs-root "%s" --all' % (os.environ["VORLUNE_SMC_HELPER"],
                                                               sysfs)
        # The real helper in whichever mode it is asked for: serving, or one answer.
        self.good_helper = 'exec "%s" --sysfs-root "%s" "$@"' % (os.environ["VORLUNE_SMC_HELPER"],
                                                                 sysfs)
        self.install_helper(self.good_helper)

    def install_helper(self, body):
        # In one rename, so no tick ever runs a half-written script.
        write_file(self.helper, "#!/bin/sh\n" + body + "\n", 0o755)

    def remove(self):
        shutil.rmtree(self.root, ignore_errors=True)


class RunningSoak:
    """vorlune_soak --timer from a prefix, its samples and answers collected as they come."""

    def __init__(self, prefix, settings_file):
        self.process = subprocess.Popen(
            [prefix.program, "--timer", settings_file], stdin=subprocess.PIPE,
            stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True, bufsize=1,
            env=dict(os.environ, QT_QPA_PLATFORM="offscreen", LANG="C.UTF-8"))
        self.samples, self.stderr, self.answers = [], [], queue.Queue()
        threading.Thread(target=self._read_output, daemon=True).start()
        threading.Thread(target=lambda: [self.stderr.append(line) for line in self.process.stderr],
                         daemon=True).start()
        self.helper_path = self.answers.get(timeout=30).partition("=")[2]

    def _read_output(self):
        for line in self.process.stdout:
            kind, _, rest = line.rstrip("\n").partition(" ")
            if kind == "sample":  # "t=1.5 temp=61.00 fans=1 ..."
                self.samples.append({key: float(value) for key, _, value in
                                     (word.partition("=") for word in rest.split())})
            elif kind in ("setting", "ready"):
                self.answers.put(rest)

    def samples_after(self, moment, count, timeout):
        """The first `count` samples published after CLOCK_MONOTONIC time `moment`."""
        later = lambda: [sample for sample in self.samples if sample["t"] > moment]
        wait_until(lambda: len(later()) >= count or self.process.poll() is not None, timeout)
        return later()[:count]

    def command(self, line):
        self.process.stdin.write(line + "\n")
        self.process.stdin.flush()
        return self.answers.get(timeout=10)

    def get(self, key):
        name, _, value = self.command("get " + key).partition("=")
        assert name == key, f"asked for {key}, got {name}"
        return value

    def quit(self):
        self.process.stdin.write("quit\n")
        self.process.stdin.flush()
        return self.process.wait(timeout=15)

    def kill(self):
        self.process.kill()
        self.process.communicate()


PERIOD = 2.0
BROKEN_HELPERS = {
    # Starts an answer and never ends, in a shell that waits on its own children: the
    # kill has to reach the whole group.
    "hang": """printf '{"temperatures": ['\nwhile :; do sleep 1; done""",
    "crash": """printf '{"temperatures": [{"key": "TC0D", "label": "CPU Die", "value": 7'
kill -SEGV $$""",
    "garbage": r"""printf '\377\376\000{"temperatures": [{"label": "CPU Die", "value": 99}]}\n'
printf ']]} not json {{ "fans": 12\n'""",
    # Valid JSON with a megabyte of blanks after its opening brace: more than the pipe
    # holds when the app would read only after the exit.
    "megabyte": "printf '{'\nhead -c 1048576 /dev/zero | tr '\\000' ' '\nGOOD | tail -c +2",
}


class Running(unittest.TestCase):
    def start(self, text):
        self.prefix = Prefix()
        self.addCleanup(self.prefix.remove)
        self.file = os.path.join(self.prefix.root, "config", "vorlune", "vorlune.conf")
        self.folder = os.path.dirname(self.file)
        write_file(self.file, text)
        self.soak = RunningSoak(self.prefix, self.file)
        self.addCleanup(self.soak.kill)

    def next_samples(self, count=1):
        samples = self.soak.samples_after(time.monotonic(), count, count * PERIOD + 10)
        self.assertEqual(len(samples), count, "sampling stopped: " + "".join(self.soak.stderr))
        return samples


class HelperFaults(Running):
    def test_sampling_survives_every_broken_helper(self):
        self.start("[General]\npersistCPU=true\npersistCPUTemp=true\npersistGPUTemp=true\n"
                   "persistFan=true\n")
        self.assertEqual(self.soak.helper_path, self.prefix.helper)
        good = self.prefix.good_helper
        phases = ([("good", good, GOOD)] +
                  [(name, body, (0.0, 0.0, 0, 0)) for name, body in BROKEN_HELPERS.items()] +
                  [("good again", good, GOOD)])
        settled = None
        for name, body, readings in phases:
            self.prefix.install_helper(body.replace("GOOD", self.prefix.good_answer))
            samples = self.next_samples(4)
            if name == "good":
                settled = samples[1]
            print(name, [(s["t"], s["temp"], s["sensors"], s["fds"]) for s in samples])
            # A serving helper that ends on its own is reaped when the next tick finds it
            # gone: never more than that one.
            zombies = [s["zombies"] for s in samples]
            self.assertLessEqual(max(zombies), 0 if readings == GOOD else 1, f"{name}: unreaped")
            # The first sample after a swap may come from a helper started before it.
            for earlier, later in zip(samples[1:], samples[2:]):
                self.assertAlmostEqual(later["t"] - earlier["t"], PERIOD, delta=0.4, msg=name)
            for sample in samples[1:]:
                self.assertEqual((sample["temp"], sample["gpu"], sample["sensors"],
                                  sample["fans"]), readings, name)
            # One helper serves every tick; a broken one is replaced, never piled up.
            self.assertLessEqual(len(processes(self.prefix.helper)), 1, name)

        # The serving helper's two pipes come and go with it while it fails; nothing else
        # may, and once a good helper serves again every figure is back where it was.
        samples = self.soak.samples
        for sample in samples[samples.index(settled):]:
            self.assertIn(settled["fds"] - sample["fds"], {0, 2}, sample["t"])
            self.assertEqual(sample["threads"], settled["threads"], sample["t"])
        self.assertEqual(samples[-1]["fds"], settled["fds"])
        # One sample every period over the whole run: none skipped, none doubled.
        self.assertEqual(len(samples) - 1, round((samples[-1]["t"] - samples[0]["t"]) / PERIOD))
        self.assertEqual(self.soak.quit(), 0, "".join(self.soak.stderr))


DEFAULTS = {"persistCPU": "false", "persistMemory": "false", "persistDisk": "false",
            "persistFan": "false", "styleCPU": "", "styleMemory": "", "graphWidth": "40"}
USER = {"persistCPU": "true", "persistMemory": "true", "styleCPU": "Text Only",
        "graphWidth": "44"}
USER_FILE = "[General]\n" + "".join(f"{key}={value}\n" for key, value in USER.items())
GARBAGE = (b"\xff\xfe\x00[General\npersistCPU=maybe\n=\n[[[\x00\x01styleCPU\n"
           b"graphWidth=@Variant(\x00\x00\x00\x7f)\n" + bytes(range(256)))


class SettingsFaults(Running):
    def assert_last_or_default(self, what):
        for key, default in DEFAULTS.items():
            self.assertIn(self.soak.get(key), {default, USER.get(key, default)}, f"{what}: {key}")
        shown = sum(self.soak.get(key) == "true" for key in DEFAULTS if key.startswith("persist"))
        self.assertEqual(self.next_samples()[0]["items"], shown, f"{what}: items follow settings")

    def set(self, key, value):
        self.assertEqual(self.soak.command(f"set {key} {value}"), f"{key}={value}")

    def file_holds(self, *lines):
        with open(self.file) as file:
            text = file.read()
        for line in lines:
            self.assertIn(line, text)

    def test_a_broken_file_loses_nothing_valid(self):
        self.start(USER_FILE)
        # Root ignores permissions: a directory at the file's path, or a file at the
        # folder's path, stands in for an unwritable file. Each fault: how to make it, how
        # to undo it, a value written while it lasts and one written after.
        faults = [
            ("garbage", lambda: write_file(self.file, GARBAGE), None,
             ("styleCPU", "Graph Only"), ("persistDisk", "true")),
            ("deleted", lambda: os.remove(self.file), None,
             ("styleMemory", "Graph Only"), ("styleDisk", "Text Only")),
            ("directory for file", lambda: (os.remove(self.file), os.mkdir(self.file)),
             lambda: os.rmdir(self.file), ("graphWidth", "50"), ("persistFan", "true")),
            ("file for folder", lambda: (shutil.rmtree(self.folder), write_file(self.folder, "")),
             lambda: (os.remove(self.folder), os.mkdir(self.folder)),
             ("styleGPUTemp", "Text Only"), ("styleNetwork", "Graph Only")),
        ]
        for what, damage, repair, (key, value), (later_key, later_value) in faults:
            # An edit by another process is picked up and is the last value from here on.
            write_file(self.file, USER_FILE)
            self.next_samples()
            self.assertEqual({key: self.soak.get(key) for key in USER}, USER, what)
            damage()
            self.next_samples()
            self.assert_last_or_default(what)
            # A value written while the file is broken reads back, also a tick later...
            self.set(key, value)
            if repair:
                repair()
            self.next_samples()
            self.assertEqual(self.soak.get(key), value, what)
            # ...and lands in the file at the latest with the next write.
            self.set(later_key, later_value)
            self.file_holds(f"{key}={value}", f"{later_key}={later_value}")
        self.assertEqual(self.soak.quit(), 0, "".join(self.soak.stderr))

    def test_a_write_made_while_unwritable_lands_even_with_no_later_write(self):
        self.start(USER_FILE)
        os.remove(self.file)
        os.mkdir(self.file)
        self.next_samples()
        self.set("styleFan", "Text Only")
        os.rmdir(self.file)
        self.next_samples()
        self.assertEqual(self.soak.quit(), 0, "".join(self.soak.stderr))
        self.file_holds("styleFan=Text Only")


def main():
    prefix = Prefix()
    try:
        # Offscreen has no tray: each new item's QSystemTrayIcon warns that a signal of the
        # tray platform is missing, and forty layout flips would bury the figures.
        env = dict(os.environ, QT_QPA_PLATFORM="offscreen", LANG="C.UTF-8",
                   QT_LOGGING_RULES="qt.core.qobject.connect=false",
                   # Stop at the first error of either sanitizer, and fail at exit on a leak.
                   ASAN_OPTIONS="detect_leaks=1:halt_on_error=1",
                   UBSAN_OPTIONS="print_stacktrace=1:halt_on_error=1")
        started = time.monotonic()
        status = subprocess.call([prefix.program, os.path.join(prefix.root, "vorlune.conf"),
                                  *sys.argv[1:]], env=env)
        print("vorlune_soak exited with %d after %.1f s" % (status, time.monotonic() - started))
        return status
    finally:
        prefix.remove()


if __name__ == "__main__":
    sys.exit(main())
