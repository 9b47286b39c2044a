"""A throw-away install prefix for vorlune_soak with a helper that can be swapped.

The application finds its helper next to itself, at <prefix>/libexec/vorlune/smc_helper,
so the tests copy vorlune_soak to <prefix>/bin and put a script there: one that runs the
real smc_helper over a fake sysfs tree, or one that misbehaves.
"""

import os
import queue
import shutil
import subprocess
import tempfile
import threading
import time

# What the fake tree below reads as, through the real helper and the application.
GOOD_TEMPERATURE = 61.0
GOOD_GPU_TEMPERATURE = 47.0
GOOD_SENSOR_COUNT = 4
GOOD_FAN_COUNT = 1


def build_fake_sysfs(root):
    """A kernel-like tree: a coretemp CPU and an amdgpu card with one fan."""
    chips = {
        ("platform/coretemp.0", 2): {
            "name": "coretemp",
            "temp1_input": "61000", "temp1_label": "Package id 0",
            "temp2_input": "58000", "temp2_label": "Core 0",
            "temp3_input": "59500", "temp3_label": "Core 1",
        },
        ("pci0000:00/0000:00:03.1/0000:0a:00.0", 0): {
            "name": "amdgpu",
            "temp1_input": "47000", "temp1_label": "edge",
            "fan1_input": "1500", "fan1_min": "0", "fan1_max": "3300",
            "fan1_target": "1500", "pwm1": "90", "pwm1_enable": "2",
        },
    }
    os.makedirs(os.path.join(root, "sys/class/hwmon"), exist_ok=True)
    for (device, number), attributes in chips.items():
        hwmon = "hwmon%d" % number
        chip = os.path.join(root, "sys/devices", device, "hwmon", hwmon)
        os.makedirs(chip)
        os.symlink("../../../" + os.path.basename(device), os.path.join(chip, "device"))
        os.symlink("../../devices/%s/hwmon/%s" % (device, hwmon),
                   os.path.join(root, "sys/class/hwmon", hwmon))
        for name, content in attributes.items():
            with open(os.path.join(chip, name), "w") as attribute:
                attribute.write(content + "\n")
    # A card that is powered down is not woken to be read.
    power = os.path.join(root, "sys/devices/pci0000:00/0000:00:03.1/0000:0a:00.0/power")
    os.makedirs(power)
    with open(os.path.join(power, "runtime_status"), "w") as status:
        status.write("active\n")


class Prefix:
    def __init__(self, soak_program, real_helper):
        self.root = tempfile.mkdtemp(prefix="vorlune-soak-")
        self.real_helper = real_helper
        self.program = os.path.join(self.root, "bin", "vorlune_soak")
        self.helper = os.path.join(self.root, "libexec", "vorlune", "smc_helper")
        self.sysfs = os.path.join(self.root, "sysfs")
        os.makedirs(os.path.dirname(self.program))
        os.makedirs(os.path.dirname(self.helper))
        shutil.copy2(soak_program, self.program)
        build_fake_sysfs(self.sysfs)
        self.install_good_helper()

    @classmethod
    def from_environment(cls):
        return cls(os.environ["VORLUNE_SOAK"], os.environ["VORLUNE_SMC_HELPER"])

    def remove(self):
        shutil.rmtree(self.root, ignore_errors=True)

    def install_helper(self, body):
        """Puts a shell script at the helper's path in one rename, so no tick ever
        runs a half-written file."""
        staged = self.helper + ".new"
        with open(staged, "w") as script:
            script.write("#!/bin/sh\n" + body + "\n")
        os.chmod(staged, 0o755)
        os.rename(staged, self.helper)

    def good_answer_command(self):
        return '"%s" --sysfs-root "%s" --all' % (self.real_helper, self.sysfs)

    def install_good_helper(self):
        self.install_helper("exec " + self.good_answer_command())

    def helper_processes(self):
        """Pids of processes still running a script at the helper's path."""
        found = []
        for name in os.listdir("/proc"):
            if not name.isdigit():
                continue
            try:
                with open("/proc/%s/cmdline" % name, "rb") as cmdline:
                    arguments = cmdline.read().split(b"\0")
            except OSError:
                continue
            if self.helper.encode() in arguments:
                found.append(int(name))
        return found


def parse_fields(text):
    """'t=1.5 temp=61.00 fans=1' -> {'t': 1.5, 'temp': 61.0, 'fans': 1.0}"""
    fields = {}
    for word in text.split():
        key, _, value = word.partition("=")
        fields[key] = float(value)
    return fields


class RunningSoak:
    """vorlune_soak --timer from a prefix, its output lines collected as they come."""

    def __init__(self, prefix, settings_file, extra_env=None):
        env = dict(os.environ, QT_QPA_PLATFORM="offscreen", LANG="C.UTF-8")
        env.update(extra_env or {})
        self.process = subprocess.Popen(
            [prefix.program, "--timer", "--settings", settings_file],
            stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.PIPE, env=env,
            text=True, bufsize=1)
        self.samples = []
        self.answers = queue.Queue()
        self.ready = queue.Queue()
        self.stderr = []
        self._sample_added = threading.Condition()
        threading.Thread(target=self._read_output, daemon=True).start()
        threading.Thread(target=self._read_errors, daemon=True).start()
        self.helper_path = self.ready.get(timeout=30)

    def _read_output(self):
        for line in self.process.stdout:
            kind, _, rest = line.rstrip("\n").partition(" ")
            if kind == "sample":
                with self._sample_added:
                    self.samples.append(parse_fields(rest))
                    self._sample_added.notify_all()
            elif kind == "setting":
                self.answers.put(rest)
            elif kind == "ready":
                self.ready.put(rest.partition("=")[2])
        with self._sample_added:
            self._sample_added.notify_all()

    def _read_errors(self):
        for line in self.process.stderr:
            self.stderr.append(line)

    def samples_after(self, moment, count, timeout):
        """Waits for `count` samples published after CLOCK_MONOTONIC time `moment`."""
        deadline = time.monotonic() + timeout
        with self._sample_added:
            while True:
                later = [s for s in self.samples if s["t"] > moment]
                if len(later) >= count or self.process.poll() is not None:
                    return later[:count]
                left = deadline - time.monotonic()
                if left <= 0:
                    return later
                self._sample_added.wait(left)

    def command(self, line, timeout=10):
        self.process.stdin.write(line + "\n")
        self.process.stdin.flush()
        return self.answers.get(timeout=timeout)

    def get(self, key):
        answer = self.command("get " + key)
        name, _, value = answer.partition("=")
        if name != key:
            raise AssertionError("asked for %s, got %r" % (key, answer))
        return value

    def quit(self, timeout=15):
        try:
            self.process.stdin.write("quit\n")
            self.process.stdin.flush()
        except BrokenPipeError:
            pass
        return self.process.wait(timeout=timeout)

    def kill(self):
        if self.process.poll() is None:
            self.process.kill()
            self.process.wait()
        for stream in (self.process.stdin, self.process.stdout, self.process.stderr):
            try:
                stream.close()
            except OSError:
                pass
