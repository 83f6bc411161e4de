#!/usr/bin/python3
"""Samples of a fleet that is not there: OpenMetrics text with time stamps, on standard output.

Each machine is made from a template, which is what `kraid-inventory --format openmetrics` wrote:
faults in it are healed, host and serial numbers become its own, controllers are taken until there
are enough drives, and copies of the last drive fill up what is still missing. Then one fault of the
table at the end happens to it, or none. When a fault happens is counted back from the end, so what
is there at the end does not depend on the duration. The same arguments give the same text; machine
N is the same whatever other machines are written (--first), and only one is in memory at a time:

    simulated_fleet.py --machines 1000 --drives 50 --every 100 TEMPLATE... >fleet.txt &&
      promtool tsdb create-blocks-from openmetrics fleet.txt data
"""

import argparse
import random
import re
import sys
import zlib

FILE = '"/var/lib/prometheus/node-exporter/kraid.prom"'
SAMPLE = re.compile(r'^(\w+)(?:\{(.*)\})? (\S+)$')
LABEL = re.compile(r'(\w+)="((?:[^"\\]|\\.)*)"')
STATES = ("ok", "warning", "critical", "unknown")
PARTS = ("controller", "logical_drive", "device")  # their names are those of their labels, too
INTERVAL = 900  # seconds, of the timer


def read_template(path):
    """Returns {(name, ((label, text), ...)): number as text}; labels stay escaped."""
    samples = {}
    with open(path, encoding="utf-8") as lines:
        for line in lines:
            match = SAMPLE.match(line)
            if match and not line.startswith("#"):
                name, labels, value = match.groups()
                samples[name, tuple(LABEL.findall(labels or ""))] = value
    if not any(name == "kraid_build_info" for name, _ in samples):
        sys.exit(f"simulated_fleet: {path}: this is no output of kraid-inventory")
    return samples


def number_of(place):
    return [int(part) if part.isdigit() else -1 for part in place.split(",")]


class Machine:
    """The series of one machine, and what happens to them."""

    def __init__(self, number, template, drives, fault, seed):
        self.number, self.seed = number, seed
        self.instance = f"m{number:04d}:9100"
        site = ("north", "south")[number % 2]
        self.target = f'instance="{self.instance}",job="node",site="{site}"'
        self.random = random.Random(f"{seed}/{number}")
        self.samples = dict(template)
        self.up, self.scraped, self.has_metrics, self.readable = True, True, True, True
        self.clock_s = 0  # ahead of ours
        self.collects_until = None  # the time of the last collection, where there is no further one
        self.heal()
        self.take_controllers(drives, fault)
        self.fill_up(drives)
        self.rename()
        self.prefixes = {}
        self.count()
        self.events = fault.happens(self) if fault else iter(())
        try:
            self.next_event = next(self.events, None)
        except IndexError:
            sys.exit(f"simulated_fleet: {fault.name} cannot happen to what {self.instance} has")

    # What is there.

    def find(self, name, **labels):
        """The keys of all samples of this name that have these labels."""
        wanted = labels.items()
        return [key for key in self.samples if key[0] == name and wanted <= dict(key[1]).items()]

    def labels(self, name, **labels):
        return [dict(key[1]) for key in self.find(name, **labels)]

    def drives(self, **labels):
        """The labels of drives, by controller and place."""
        def order(drive):
            return int(drive["controller"]), number_of(drive["device"])

        return sorted(self.labels("kraid_device_info", kind="drive", **labels), key=order)

    def array_drive(self):
        """A drive of a logical drive that has redundancy, and that logical drive."""
        for logical in self.labels("kraid_logical_drive_info"):
            members = self.drives(controller=logical["controller"], array=logical.get("array", "-"))
            if logical.get("raid_level") in ("1", "5", "6") and len(members) > 2:
                return members[1], logical
        sys.exit(f"simulated_fleet: {self.instance} has no array that could lose a drive")

    # What happens to it.

    def set(self, name, value, **labels):
        for key in self.find(name, **labels):
            self.samples[key] = str(value)

    def add(self, name, value, **labels):
        for key in self.find(name, **labels):
            self.samples[key] = str(int(float(self.samples[key])) + value)

    def relabel(self, name, changes, **labels):
        for key in self.find(name, **labels):
            value = self.samples.pop(key)
            self.samples[name, tuple({**dict(key[1]), **changes}.items())] = value

    def put(self, name, value, **labels):
        self.samples[name, tuple(labels.items())] = str(value)

    def drop(self, **labels):
        """Takes out all samples that have these labels, of whatever name."""
        wanted = labels.items()
        self.keep(lambda key: not wanted <= dict(key[1]).items())

    def keep(self, is_kept):
        self.samples = {key: value for key, value in self.samples.items() if is_kept(key)}

    def state(self, part, state, word, **labels):
        for name in STATES:
            self.set(f"kraid_{part}_state", int(name == state), state=name, **labels)
        if word:
            self.relabel(f"kraid_{part}_info", {"state": word}, **labels)

    def finding(self, severity, reason, count=1):
        self.add("kraid_findings", count, severity=severity, reason=reason)

    def fails_as_a_whole(self):
        """As a collection of which nothing was had."""
        kept = "kraid_(build|machine|findings|collection_(complete|start|duration|problems))"
        self.keep(lambda key: re.match(kept, key[0]))
        for key in self.find("kraid_findings") + self.find("kraid_collection_problems"):
            self.samples[key] = "0"
        for part in PARTS:
            self.put(f"kraid_{part}s", 0)
        self.set("kraid_collection_complete", 0)
        self.set("kraid_collection_problems", 1, kind="collection_failed")

    def count(self):
        for part in PARTS:
            self.set(f"kraid_{part}s", len(self.find(f"kraid_{part}_info")))

    # How it is made.

    def heal(self):
        for device in self.labels("kraid_device_info"):
            if "?" in device["device"]:
                self.drop(controller=device["controller"], device=device["device"])
        for part in PARTS:
            for name, labels in self.find(f"kraid_{part}_state"):
                own = dict(labels)
                state = own.pop("state")
                if state in ("warning", "critical") and self.samples[name, labels] == "1":
                    self.heal_part(part, own)
        zero = ("kraid_(findings|.*_(bad_stripes|access_blocked|predicts_failure|total|rebuilds|"
                "missing_devices|over_temperature))")
        for key in self.samples:
            if re.match(zero, key[0]):
                self.samples[key] = "0"
        gone = "kraid_controller_(rebuild_progress_ratio|operation_info)"
        self.keep(lambda key: not re.match(gone, key[0]))

    def heal_part(self, part, labels):
        others = self.labels(f"kraid_{part}_info", controller=labels["controller"])
        fine = [other["state"] for other in others
                if re.match("(?i)on|ok|opt", other.get("state", ""))]
        self.state(part, "ok", fine[0] if fine else "Okay", **labels)

    def take_controllers(self, drives, fault):
        there = [info["controller"] for info in self.labels("kraid_controller_info")]
        self.random.shuffle(there)
        needed = fault.needs if fault else None
        if needed:
            suited = {dict(key[1])["controller"] for key in self.find(needed)
                      if fault.value in (None, self.samples[key])}
            there.sort(key=lambda controller: controller not in suited)
        taken = 0
        for position, controller in enumerate(there):
            own = self.drives(controller=controller)
            # Hot spares first: what is too many is taken from the end.
            spares = [dict(key[1])["device"]
                      for key in self.find("kraid_device_hot_spare", controller=controller)
                      if self.samples[key] == "1"]
            own.sort(key=lambda drive: drive["device"] not in spares)
            if taken >= drives and position:
                self.drop(controller=controller)
                continue
            for drive in own[max(drives - taken, 0):]:
                self.drop(controller=controller, device=drive["device"])
            taken += len(own)

    def fill_up(self, drives):
        own = self.drives()
        if not own:
            return
        last = place(own[-1]).items()
        series = [item for item in self.samples.items() if last <= dict(item[0][1]).items()]
        for extra in range(drives - len(own)):
            for (name, labels), value in series:
                changed = {**dict(labels), "device": f"{8 + extra // 15},{extra % 15}"}
                if "serial" in changed:
                    changed["serial"] += str(extra)
                self.samples[name, tuple(changed.items())] = value

    def own_serial(self, text):
        # The letters in front tell the maker and stay; the number is as long as before, or longer.
        letters = re.match("[A-Za-z]*", text).group()
        return f"{letters}{zlib.crc32(f'{self.seed}/{self.number}/{text}'.encode()):010d}"

    def rename(self):
        self.relabel("kraid_machine_info", {"host": f"m{self.number:04d}"})
        renamed = {}
        for (name, labels), value in self.samples.items():
            renamed[name, tuple(
                (key, self.own_serial(text) if key in ("serial", "world_wide_name") else text)
                for key, text in labels)] = value
        self.samples = renamed

    # What a scrape takes.

    def write(self, out, time, end):
        """Writes all samples at this time (seconds); `end` is the time at which the fleet ends."""
        while self.next_event is not None and time >= end - self.next_event * 3600:
            self.next_event = next(self.events, None)
        if not self.scraped:
            return
        out.write(f"up{{{self.target}}} {int(self.up)} {time}\n")
        if not self.up:
            return
        has_metrics = self.has_metrics and self.readable
        if self.collects_until is None or time <= self.collects_until:
            self.collected = time - (time - self.number * 7) % INTERVAL - 5 + self.clock_s
        out.write(f"node_textfile_scrape_error{{{self.target}}} {int(not self.readable)} {time}\n")
        if not has_metrics:
            return
        written = self.collected + 4
        out.write(f"node_textfile_mtime_seconds{{{self.target},file={FILE}}} {written} {time}\n")
        self.set("kraid_collection_start_time_seconds", self.collected)
        prefixes = self.prefixes
        lines = []
        for key, value in self.samples.items():
            prefix = prefixes.get(key)
            if prefix is None:
                labels = "".join(f',{name}="{text}"' for name, text in key[1])
                prefix = prefixes[key] = f"{key[0]}{{{self.target}{labels}}} "
            lines.append(f"{prefix}{value} {time}\n")
        out.writelines(lines)


# The faults. Each is a generator: it yields how many hours before the end something happens, and
# goes on with what happens then.

class Fault:
    """What happens, and which series (with which value) a controller has to have for it."""

    def __init__(self, happens, needs=None, value=None):
        self.name, self.happens, self.needs, self.value = happens.__name__, happens, needs, value


def place(drive):
    return {"controller": drive["controller"], "device": drive["device"]}


def logical_place(logical):
    return {"controller": logical["controller"], "logical_drive": logical["logical_drive"]}


def drive_failed(machine):
    """A drive fails, and its logical drive is degraded."""
    drive, logical = machine.array_drive()
    yield 20
    machine.state("device", "critical", "Defunct (DDD)", **place(drive))
    machine.state("logical_drive", "critical", "Critical (CRT)", **logical_place(logical))
    machine.finding("critical", "device_failed")
    machine.finding("critical", "drive_degraded")


def drive_replaced(machine):
    """A drive fails, and is replaced by another one with a history of its own."""
    drive, logical = machine.array_drive()
    yield 22
    machine.state("device", "critical", "Defunct (DDD)", **place(drive))
    yield 12
    other = {"serial": drive.get("serial", "") + "R", "firmware": "NEW1"}
    machine.relabel("kraid_device_info", other, **place(drive))
    machine.state("device", "ok", "Online (ONL)", **place(drive))
    machine.set("kraid_device_soft_errors_total", 77, **place(drive))


def failure_predicted(machine):
    """A drive says that it will fail."""
    drive, _ = machine.array_drive()
    yield 30
    machine.set("kraid_device_predicts_failure", 1, **place(drive))
    machine.add("kraid_device_predicted_failures_total", 1, **place(drive))
    machine.finding("warning", "predicted_failure")


def errors_grow(machine):
    """Soft errors of a drive grow, and are reset in between; another drive had its long ago."""
    first = machine.labels("kraid_device_soft_errors_total")[0]
    drive, other = machine.drives(controller=first["controller"])[:2]
    machine.set("kraid_device_soft_errors_total", 500, **place(drive))
    machine.set("kraid_device_hard_errors_total", 9, **place(other))
    for hour in range(16, -1, -1):
        yield hour
        if hour == 10:
            machine.set("kraid_device_soft_errors_total", 0, **place(drive))
        machine.add("kraid_device_soft_errors_total", 3, **place(drive))


def rebuilding(machine):
    """A drive is rebuilt: a twentieth an hour, three quarters are done."""
    yield from rebuild(machine, 15, lambda hours: hours / 20)


def rebuild_stalled(machine):
    """A rebuild that has not got on for days."""
    yield from rebuild(machine, 40, lambda hours: min(hours / 20, 0.25))


def rebuild(machine, began, progress):
    drive, logical = machine.array_drive()
    yield began
    machine.state("device", "warning", "Rebuilding (RBL)", **place(drive))
    machine.state("logical_drive", "critical", "Critical (CRT)", **logical_place(logical))
    machine.set("kraid_controller_rebuilds", 1, controller=drive["controller"])
    machine.put("kraid_controller_operation_info", 1, controller=drive["controller"],
                operation="Rebuild", status="In progress", logical_drive=logical["logical_drive"])
    machine.finding("critical", "drive_degraded")
    machine.finding("warning", "rebuild", 2)
    for hour in range(began, -1, -1):
        yield hour
        machine.put("kraid_controller_rebuild_progress_ratio", progress(began - hour),
                    **logical_place(logical))


def bad_stripes_grow(machine):
    """A logical drive loses stripes."""
    where = machine.labels("kraid_logical_drive_bad_stripes")[0]
    for hour in range(12, 0, -2):
        yield hour
        machine.add("kraid_logical_drive_bad_stripes", 2, **where)
    machine.finding("warning", "bad_stripes")


def bad_stripes_old(machine):
    """A logical drive lost stripes long ago."""
    where = machine.labels("kraid_logical_drive_bad_stripes")[0]
    machine.set("kraid_logical_drive_bad_stripes", 17, **where)
    machine.finding("warning", "bad_stripes")
    yield from ()


def access_blocked(machine):
    yield 9
    where = machine.labels("kraid_logical_drive_access_blocked")[0]
    machine.set("kraid_logical_drive_access_blocked", 1, **where)
    machine.finding("warning", "access_blocked")


def battery_bad(machine):
    """A battery that does not hold its charge."""
    where = machine.labels("kraid_controller_battery_charge_ratio")[0]
    machine.set("kraid_controller_battery_charge_ratio", 0.2, **where)
    yield 28
    machine.state("controller_battery", "warning", "Failed", **where)
    machine.finding("warning", "battery")


def controller_failed(machine):
    yield 7
    first = machine.labels("kraid_controller_info")[0]
    machine.state("controller", "critical", "Failed", controller=first["controller"])
    machine.finding("critical", "controller_failed")


def controller_vanished(machine):
    """The last controller is gone, as after a restart; the others are still there."""
    yield 6
    machine.drop(controller=machine.labels("kraid_controller_info")[-1]["controller"])
    machine.count()
    if not machine.labels("kraid_controller_info"):
        machine.set("kraid_collection_complete", 0)


def drive_vanished(machine):
    """A drive is not listed any more, though nobody says so."""
    yield 5
    machine.drop(**place(machine.drives()[-1]))
    machine.count()


def device_missing(machine):
    """An array names a drive that is not listed any more."""
    drive, logical = machine.array_drive()
    yield 10
    machine.drop(**place(drive))
    machine.count()
    machine.set("kraid_controller_missing_devices", 1, controller=drive["controller"])
    machine.state("logical_drive", "critical", "Critical (CRT)", **logical_place(logical))
    machine.finding("critical", "device_missing")
    machine.finding("critical", "drive_degraded")


def not_listed(machine):
    """A controller counts a failed drive that it does not list, and an operation failed."""
    yield 10
    machine.finding("critical", "counts_differ")
    machine.finding("warning", "operation")


def state_unclear(machine):
    """A drive, and then a logical drive, has a word that nobody knows."""
    drive, logical = machine.array_drive()
    yield 10
    machine.state("device", "warning", "Sanitizing", **place(drive))
    machine.state("logical_drive", "warning", "Impacted", **logical_place(logical))
    machine.finding("warning", "state_not_fine", 2)


def spares_gone(machine):
    """All hot spares are used up."""
    yield 18
    for key in machine.find("kraid_device_hot_spare"):
        if machine.samples[key] == "1":
            where = place(dict(key[1]))
            machine.set("kraid_device_hot_spare", 0, **where)
            machine.relabel("kraid_device_info", {"state": "Online (ONL)"}, **where)


def tool_refuses(machine):
    """The tool has lost its rights."""
    yield 8
    tool = machine.labels("kraid_controller_info")[0]["tool"]
    for info in machine.labels("kraid_controller_info", tool=tool):
        machine.drop(controller=info["controller"])
    machine.count()
    machine.set("kraid_collection_complete", 0)
    machine.set("kraid_collection_problems", 1, kind="tool_refused")


def tool_hangs(machine):
    """The tool is so slow that some runs are ended, and the last ones not made."""
    yield 33
    tool = machine.labels("kraid_controller_info")[0]["tool"]
    machine.set("kraid_collection_runs", 3, tool=tool, outcome="timed_out")
    machine.set("kraid_collection_runs", 11, tool=tool, outcome="not_asked")
    machine.set("kraid_collection_complete", 0)
    machine.set("kraid_collection_duration_seconds", 60.2)
    machine.set("kraid_collection_problems", 3, kind="run_timed_out")
    machine.set("kraid_collection_problems", 11, kind="run_not_asked")


def collection_failed(machine):
    yield 14
    machine.fails_as_a_whole()


def collection_stale(machine):
    """The timer does not run any more."""
    yield 11
    machine.collects_until = machine.collected


def clock_ahead(machine):
    """Its clock is an hour fast."""
    yield 11
    machine.clock_s = 3600


def metrics_gone(machine):
    """The package was removed."""
    yield 4
    machine.has_metrics = False


def metrics_unreadable(machine):
    """Something else broke the file."""
    yield 3
    machine.readable = False


def target_down(machine):
    yield 2
    machine.up = False


def target_removed(machine):
    yield 2
    machine.scraped = False


def old_firmware(machine):
    """Its controller missed the last round of updates."""
    machine.relabel("kraid_controller_info", {"firmware": "4.00.01"})
    yield from ()


def capacity_grows(machine):
    """A logical drive was made twice as large."""
    yield 13
    where = machine.labels("kraid_logical_drive_size_bytes")[0]
    machine.set("kraid_logical_drive_size_bytes", 2 * 10**12, **where)


FAULTS = [
    Fault(drive_failed, "kraid_device_hard_errors_total"),
    Fault(drive_replaced, "kraid_device_soft_errors_total"),
    Fault(failure_predicted, "kraid_device_hard_errors_total"),
    Fault(errors_grow, "kraid_device_soft_errors_total"),
    Fault(rebuilding, "kraid_device_hard_errors_total"),
    Fault(rebuild_stalled),
    Fault(bad_stripes_grow, "kraid_logical_drive_bad_stripes"),
    Fault(bad_stripes_old, "kraid_logical_drive_bad_stripes"),
    Fault(access_blocked, "kraid_logical_drive_access_blocked"),
    Fault(battery_bad, "kraid_controller_battery_charge_ratio"),
    Fault(controller_failed),
    Fault(controller_vanished),
    Fault(drive_vanished),
    Fault(device_missing),
    Fault(not_listed),
    Fault(state_unclear),
    Fault(spares_gone, "kraid_device_hot_spare", "1"),
    Fault(tool_refuses),
    Fault(tool_hangs),
    Fault(collection_failed),
    Fault(collection_stale),
    Fault(clock_ahead),
    Fault(metrics_gone),
    Fault(metrics_unreadable),
    Fault(target_down),
    Fault(target_removed),
    Fault(old_firmware),
    Fault(capacity_grows),
]


def seconds(text):
    match = re.fullmatch(r"(\d+)([smhd]?)", text)
    if not match:
        raise argparse.ArgumentTypeError(f"{text} is no duration such as 90s, 5m, 48h or 7d")
    return int(match[1]) * {"": 1, "s": 1, "m": 60, "h": 3600, "d": 86400}[match[2]]


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n", maxsplit=1)[0])
    parser.add_argument("--machines", type=int, default=len(FAULTS) + 1, help="how many")
    parser.add_argument("--first", type=int, default=0, help="number of the first one")
    parser.add_argument("--drives", type=int, default=12, help="of each machine")
    parser.add_argument("--every", type=int, default=len(FAULTS) + 1,
                        help="machine N has fault N modulo this, or none beyond the last")
    parser.add_argument("--duration", type=seconds, default="48h")
    parser.add_argument("--step", type=seconds, default="1h", help="between two scrapes")
    parser.add_argument("--end", type=int, default=1_700_000_000, help="time of the last scrape")
    parser.add_argument("--seed", default="kraid")
    parser.add_argument("--list", action="store_true", help="tell which machine has which fault")
    parser.add_argument("templates", metavar="TEMPLATE", nargs="*")
    arguments = parser.parse_args()
    numbers = range(arguments.first, arguments.first + arguments.machines)
    faults = [dict(enumerate(FAULTS)).get(number % arguments.every) for number in numbers]
    if arguments.list:
        for number, fault in zip(numbers, faults):
            print(f"m{number:04d}:9100", fault.name if fault else "healthy")
        return
    if not arguments.templates:
        parser.error("which templates?")
    try:
        templates = [read_template(path) for path in arguments.templates]
    except OSError as error:
        sys.exit(f"simulated_fleet: {error}")
    for number, fault in zip(numbers, faults):
        template = templates[number % len(templates)]
        machine = Machine(number, template, arguments.drives, fault, arguments.seed)
        for time in range(arguments.end - arguments.duration, arguments.end + 1, arguments.step):
            machine.write(sys.stdout, time, arguments.end)
    print("# EOF")


if __name__ == "__main__":
    try:
        main()
    except BrokenPipeError:
        sys.stderr.close()
        sys.exit(1)
