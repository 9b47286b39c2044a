"""A virtual desktop for end-to-end tests: Xvfb, a tray host, screenshots, clicks."""

import os
import re
import shutil
import signal
import subprocess
import tempfile
import time

HERE = os.path.dirname(os.path.abspath(__file__))


def wait_until(predicate, timeout, interval=0.1):
    deadline = time.monotonic() + timeout
    while time.monotonic() < deadline:
        result = predicate()
        if result:
            return result
        time.sleep(interval)
    return predicate()


class Desktop:
    """Xvfb with openbox and tint2 (XEmbed) or xfce4-panel (StatusNotifierItem)."""

    def __init__(self, host, artifacts):
        self.host = host
        self.artifacts = artifacts
        os.makedirs(artifacts, exist_ok=True)
        self.home = tempfile.mkdtemp(prefix="vorlune-e2e-")
        self.config = os.path.join(self.home, "config")
        self.runtime = os.path.join(self.home, "runtime")
        os.makedirs(self.config)
        os.makedirs(self.runtime, mode=0o700)
        self.processes = []
        self.bus_pid = None
        self.env = dict(os.environ)
        for name in ("WAYLAND_DISPLAY", "QT_QPA_PLATFORM", "SESSION_MANAGER"):
            self.env.pop(name, None)
        self.env.update(XDG_CONFIG_HOME=self.config, XDG_RUNTIME_DIR=self.runtime,
                        HOME=self.home, LANG="C.UTF-8")
        self.display = self._start_xvfb()
        self.env["DISPLAY"] = self.display

    def _start_xvfb(self):
        read_end, write_end = os.pipe()
        xvfb = subprocess.Popen(
            ["Xvfb", "-displayfd", str(write_end), "-screen", "0", "1280x800x24",
             "-nolisten", "tcp"], pass_fds=(write_end,), stderr=subprocess.DEVNULL)
        os.close(write_end)
        self.processes.append(xvfb)
        number = b""
        with os.fdopen(read_end, "rb") as pipe:
            while not number.endswith(b"\n"):
                chunk = pipe.read(1)
                if not chunk:
                    raise RuntimeError("Xvfb did not start")
                number += chunk
        return ":" + number.decode().strip()

    def spawn(self, argv, **kwargs):
        process = subprocess.Popen(argv, env=self.env, stdout=subprocess.DEVNULL,
                                   stderr=kwargs.pop("stderr", subprocess.DEVNULL), **kwargs)
        self.processes.append(process)
        return process

    def start_tray_host(self):
        if self.host == "tint2":
            # Without a session bus Qt has no StatusNotifierItem host and uses XEmbed.
            self.env["DBUS_SESSION_BUS_ADDRESS"] = "disabled:"
            self.spawn(["openbox"])
            time.sleep(0.5)
            self.tint2 = self.spawn(["tint2", "-c", os.path.join(HERE, "tint2-minimal.rc")])
            if not wait_until(self._tray_selection_owned, 20):
                raise RuntimeError("tint2 did not claim the tray")
        else:
            xml_dir = os.path.join(self.config, "xfce4", "xfconf", "xfce-perchannel-xml")
            os.makedirs(xml_dir)
            shutil.copy(os.path.join(HERE, "xfce4-panel-minimal.xml"),
                        os.path.join(xml_dir, "xfce4-panel.xml"))
            out = subprocess.run(["dbus-daemon", "--session", "--fork", "--print-address=1",
                                  "--print-pid=1"], env=self.env, capture_output=True,
                                 text=True, check=True).stdout.split()
            self.env["DBUS_SESSION_BUS_ADDRESS"] = out[0]
            self.bus_pid = int(out[1])
            self.spawn(["openbox"])
            time.sleep(0.5)
            self.spawn(["xfce4-panel"])
            if not wait_until(self._watcher_owned, 30, 0.25):
                raise RuntimeError("xfce4-panel did not start a StatusNotifierWatcher")
        time.sleep(1.0)

    def restart_tray_host(self):
        if self.host == "tint2":
            self.tint2.kill()
            self.tint2.wait()
            time.sleep(1.0)
            self.tint2 = self.spawn(["tint2", "-c", os.path.join(HERE, "tint2-minimal.rc")])
            wait_until(self._tray_selection_owned, 20)
        else:
            subprocess.run(["pkill", "-f", "xfce4-panel"], env=self.env)
            time.sleep(1.0)
            self.spawn(["xfce4-panel"])
            wait_until(self._watcher_owned, 30, 0.25)
        time.sleep(1.0)

    def _tray_selection_owned(self):
        out = subprocess.run(["xdotool", "search", "--class", "tint2"], env=self.env,
                             capture_output=True, text=True).stdout
        return bool(out.strip())

    def _watcher_owned(self):
        out = subprocess.run(
            ["dbus-send", "--session", "--print-reply", "--dest=org.freedesktop.DBus", "/",
             "org.freedesktop.DBus.NameHasOwner", "string:org.kde.StatusNotifierWatcher"],
            env=self.env, capture_output=True, text=True).stdout
        return "boolean true" in out

    def write_settings(self, values):
        directory = os.path.join(self.config, "vorlune")
        os.makedirs(directory, exist_ok=True)
        path = os.path.join(directory, "vorlune.conf")
        temporary = path + ".new"
        with open(temporary, "w") as out:
            out.write("[General]\n")
            for key, value in values.items():
                out.write(f"{key}={value}\n")
        os.replace(temporary, path)

    def screenshot(self, name):
        path = os.path.join(self.artifacts, f"{self.host}-{name}.png")
        subprocess.run(["import", "-window", "root", path], env=self.env, check=True)
        return path

    def find_colour(self, screenshot, colour, fuzz="12%"):
        """Bounding box (x, y, w, h) of the pixels near `colour`, or None."""
        out = subprocess.run(
            ["convert", screenshot, "-fuzz", fuzz, "-fill", "black", "+opaque", colour,
             "-fill", "white", "-opaque", colour, "-trim", "info:-"],
            capture_output=True, text=True).stdout
        match = re.search(r" (\d+)x(\d+) \d+x\d+([+-]\d+)([+-]\d+)", out)
        if not match:
            return None
        width, height, x, y = (int(v) for v in match.groups())
        if width <= 1 and height <= 1 and x < 0:
            return None
        return x, y, width, height

    def changed_pixels(self, before, after):
        result = subprocess.run(["compare", "-metric", "AE", before, after, "null:"],
                                capture_output=True, text=True)
        return int(float(result.stderr.split()[0]))

    def click(self, x, y):
        subprocess.run(["xdotool", "mousemove", str(x), str(y), "click", "1"], env=self.env,
                       check=True)

    def close(self):
        for process in reversed(self.processes):
            if process.poll() is None:
                process.send_signal(signal.SIGTERM)
        for process in self.processes:
            try:
                process.wait(timeout=5)
            except subprocess.TimeoutExpired:
                process.kill()
        if self.bus_pid:
            try:
                os.kill(self.bus_pid, signal.SIGTERM)
            except ProcessLookupError:
                pass
        shutil.rmtree(self.home, ignore_errors=True)
