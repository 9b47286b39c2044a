"""Shared by the e2e, packaging and soak tests: waiting, files, processes, and a virtual
desktop (Xvfb, openbox and a tray host, screenshots, clicks)."""

import os
import re
import shutil
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


def run(argv, check=False, **kwargs):
    result = subprocess.run(argv, capture_output=True, text=True, **kwargs)
    if check and result.returncode != 0:
        raise RuntimeError(f"{argv} failed:\n{result.stdout}{result.stderr}")
    return result


def write_file(path, content, mode=0o644):
    """Writes a new file and renames it over `path`, as an editor does: no reader ever
    sees half of it."""
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path + ".new", "wb" if isinstance(content, bytes) else "w") as file:
        file.write(content)
    os.chmod(path + ".new", mode)
    os.rename(path + ".new", path)


def fake_sysfs(root, chips):
    """Lays out hwmon `chips` ({"<device>/hwmon/hwmonN": {attribute: value}}) under `root`
    as the kernel does, each device awake (runtime power "active")."""
    for chip, attributes in chips.items():
        for name, content in attributes.items():
            write_file(os.path.join(root, "sys/devices", chip, name), content + "\n")
        os.symlink("../..", os.path.join(root, "sys/devices", chip, "device"))
        device = os.path.dirname(os.path.dirname(chip))
        write_file(os.path.join(root, "sys/devices", device, "power/runtime_status"), "active\n")
        os.makedirs(os.path.join(root, "sys/class/hwmon"), exist_ok=True)
        os.symlink("../../devices/" + chip,
                   os.path.join(root, "sys/class/hwmon", os.path.basename(chip)))


def processes(command_part, environment_part=""):
    """Pids whose command line holds `command_part` and environment `environment_part`."""
    found = []
    for pid in filter(str.isdigit, os.listdir("/proc")):
        try:
            with open(f"/proc/{pid}/cmdline", "rb") as cmdline, \
                    open(f"/proc/{pid}/environ", "rb") as environ:
                if command_part.encode() in cmdline.read() and \
                        environment_part.encode() in environ.read():
                    found.append(int(pid))
        except OSError:
            pass
    return found


class Desktop:
    """Xvfb with openbox and tint2 (XEmbed), xfce4-panel (StatusNotifierItem, icons only)
    or mate-panel (StatusNotifierItem with text labels beside the icons)."""

    # Each panel's band on the 1280 x 800 screen: (x, y, width, height) of its tray end.
    TRAY_END = {"tint2": (0, 770, 520, 30), "xfce": (760, 0, 520, 26), "mate": (760, 0, 520, 24)}

    def __init__(self, host, artifacts, shade="default"):
        """`shade` "light" or "dark" paints xfce4-panel so; "default" leaves its own look."""
        self.host, self.artifacts, self.processes, self.shots = host, artifacts, [], set()
        self.shade = shade
        self.bus_pid = None
        os.makedirs(artifacts, exist_ok=True)
        self.home = tempfile.mkdtemp(prefix="vorlune-e2e-")
        self.config = os.path.join(self.home, "config")
        self.runtime = os.path.join(self.home, "runtime")
        os.makedirs(self.runtime, mode=0o700)
        self.env = {key: value for key, value in os.environ.items()
                    if key not in ("WAYLAND_DISPLAY", "QT_QPA_PLATFORM", "SESSION_MANAGER")}
        self.env.update(XDG_CONFIG_HOME=self.config, XDG_RUNTIME_DIR=self.runtime,
                        HOME=self.home, LANG="C.UTF-8")
        # -displayfd picks a free display, whatever other X servers run on the machine.
        read_end, write_end = os.pipe()
        self.spawn(["Xvfb", "-displayfd", str(write_end), "-screen", "0", "1280x800x24",
                    "-nolisten", "tcp"], pass_fds=(write_end,))
        os.close(write_end)
        with os.fdopen(read_end) as pipe:
            self.env["DISPLAY"] = ":" + pipe.readline().strip()

    def spawn(self, argv, stderr=subprocess.DEVNULL, stdout=subprocess.DEVNULL, **kwargs):
        process = subprocess.Popen(argv, env=self.env, stdout=stdout, stderr=stderr, **kwargs)
        self.processes.append(process)
        return process

    def start_tray_host(self):
        if self.host == "tint2":
            # Without a session bus Qt has no StatusNotifierItem host and uses XEmbed.
            self.env["DBUS_SESSION_BUS_ADDRESS"] = "disabled:"
        else:
            if self.host == "mate":
                self.env["XDG_CURRENT_DESKTOP"] = "MATE"
            # xfconfd inherits the bus's environment: the panel layout must be there first.
            with open(os.path.join(HERE, "xfce4-panel-minimal.xml")) as layout:
                layout = layout.read()
            if self.shade != "default":
                grey = "0.19" if self.shade == "dark" else "0.92"
                layout = layout.replace('<property name="size"', (
                    '<property name="background-style" type="uint" value="1"/>'
                    '<property name="background-rgba" type="array">' +
                    f'<value type="double" value="{grey}"/>' * 3 +
                    '<value type="double" value="1"/></property><property name="size"'))
            write_file(os.path.join(self.config, "xfce4/xfconf/xfce-perchannel-xml",
                                    "xfce4-panel.xml"), layout)
            address, pid = run(["dbus-daemon", "--session", "--fork", "--print-address=1",
                                "--print-pid=1"], env=self.env, check=True).stdout.split()
            self.env["DBUS_SESSION_BUS_ADDRESS"], self.bus_pid = address, int(pid)
        # Without a window manager tint2 takes about 15 s to claim the tray.
        self.spawn(["openbox"])
        time.sleep(0.5)
        self.start_panel()

    def start_panel(self):
        if self.host == "tint2":
            self.panel = self.spawn(["tint2", "-c", os.path.join(HERE, "tint2-minimal.rc")])
            ready = lambda: run(["xdotool", "search", "--class", "tint2"], env=self.env).stdout
        else:
            if self.host == "mate":
                run(["mate-panel", "--reset"], env=self.env, timeout=30)
                self.panel = self.spawn(["mate-panel"])
            else:
                self.panel = self.spawn(["xfce4-panel"])
            ready = lambda: "boolean true" in run(
                ["dbus-send", "--session", "--print-reply", "--dest=org.freedesktop.DBus", "/",
                 "org.freedesktop.DBus.NameHasOwner", "string:org.kde.StatusNotifierWatcher"],
                env=self.env).stdout
        if not wait_until(ready, 30, 0.25):
            raise RuntimeError(f"{self.host} did not take the tray")
        time.sleep(1.0)

    def tray_items(self):
        """The StatusNotifierWatcher's list of items, as dbus-send prints it."""
        return run(["dbus-send", "--session", "--print-reply",
                    "--dest=org.kde.StatusNotifierWatcher", "/StatusNotifierWatcher",
                    "org.freedesktop.DBus.Properties.Get", "string:org.kde.StatusNotifierWatcher",
                    "string:RegisteredStatusNotifierItems"], env=self.env).stdout

    def write_settings(self, values):
        write_file(os.path.join(self.config, "vorlune", "vorlune.conf"),
                   "[General]\n" + "".join(f"{key}={value}\n" for key, value in values.items()))

    def screenshot(self, name):
        path = os.path.join(self.artifacts, f"{self.host}-{name}.png")
        run(["import", "-window", "root", path], env=self.env, check=True)
        if path not in self.shots:
            self.shots.add(path)
            print("screenshot:", path)
        return path

    @staticmethod
    def crop(screenshot, region):
        x, y, width, height = region
        path = screenshot.replace(".png", f"-{width}x{height}+{x}+{y}.png")
        run(["convert", screenshot, "-crop", f"{width}x{height}+{x}+{y}", "+repage", path],
            check=True)
        return path

    @staticmethod
    def find_colour(screenshot, colour, fuzz="12%"):
        """Bounding box (x, y, w, h) of the pixels near `colour`, or None."""
        out = run(["convert", screenshot, "-fuzz", fuzz, "-fill", "black", "+opaque", colour,
                   "-fill", "white", "-opaque", colour, "-trim", "info:-"]).stdout
        match = re.search(r" (\d+)x(\d+) \d+x\d+([+-]\d+)([+-]\d+)", out)
        if not match:
            return None
        width, height, x, y = (int(v) for v in match.groups())
        # -trim of an image with no such pixel leaves one pixel outside the page.
        return None if width <= 1 and height <= 1 and x < 0 else (x, y, width, height)

    @staticmethod
    def changed_pixels(before, after):
        result = run(["compare", "-metric", "AE", before, after, "null:"])
        return int(float(result.stderr.split()[0]))

    def click(self, x, y):
        run(["xdotool", "mousemove", str(x), str(y), "click", "1"], env=self.env, check=True)

    def windows(self, *search):
        """(x, y, w, h) of each mapped window `xdotool search` finds with `search`."""
        found = []
        for window in run(["xdotool", "search", "--onlyvisible", *search],
                          env=self.env).stdout.split():
            shell = run(["xdotool", "getwindowgeometry", "--shell", window], env=self.env).stdout
            geometry = dict(line.split("=", 1) for line in shell.split())
            if "X" in geometry:
                found.append(tuple(int(geometry[k]) for k in ("X", "Y", "WIDTH", "HEIGHT")))
        return found

    def close(self):
        for process in reversed(self.processes):
            process.terminate()
        for process in self.processes:
            try:
                process.wait(timeout=5)
            except subprocess.TimeoutExpired:
                process.kill()
        if self.bus_pid:
            run(["kill", str(self.bus_pid)])
        shutil.rmtree(self.home, ignore_errors=True)
