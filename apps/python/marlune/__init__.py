"""Hand-held GPS receivers: identify one, take its waypoints, routes and tracks, send others to it,
and follow its position.

    import marlune

    with marlune.open("/dev/ttyUSB0") as gps:
        print(gps.identity)
        for waypoint in gps.waypoints():
            print(waypoint.name, waypoint.latitude, waypoint.longitude)

Angles are degrees of WGS 84, lengths metres, times datetime in UTC. What a receiver does not know
is None.
"""

from __future__ import annotations

import dataclasses
import datetime
import os
import pathlib
import queue
import tempfile
import threading
from typing import Callable, Iterable, Iterator, List, Optional, Union

from . import _marlune
from ._marlune import CapabilitySource, ConnectionOutcome, Ending, TransferKind

__version__ = _marlune.version()
__all__ = [
    "open", "virtual", "Receiver", "VirtualReceiver",
    "Waypoint", "TrackPoint", "Track", "Route", "Fix", "Report",
    "Error", "NotConnected", "Incomplete",
    "CapabilitySource", "ConnectionOutcome", "Ending", "TransferKind",
]

_DAY_ZERO = datetime.datetime(1899, 12, 30, tzinfo=datetime.timezone.utc)


@dataclasses.dataclass
class Waypoint:
    """A waypoint, a proximity waypoint, or a point of a route."""

    name: str
    latitude: float
    longitude: float
    comment: str = ""
    altitude: Optional[float] = None
    depth: Optional[float] = None
    temperature: Optional[float] = None
    proximity: Optional[float] = None
    time: Optional[datetime.datetime] = None
    symbol: Optional[int] = None
    display: Optional[int] = None


@dataclasses.dataclass
class TrackPoint:
    latitude: float
    longitude: float
    time: Optional[datetime.datetime] = None
    altitude: Optional[float] = None
    depth: Optional[float] = None
    temperature: Optional[float] = None
    segment_start: bool = False


@dataclasses.dataclass
class Track:
    name: str = ""
    points: List[TrackPoint] = dataclasses.field(default_factory=list)
    display: Optional[bool] = None
    colour: Optional[int] = None


@dataclasses.dataclass
class Route:
    name: str = ""
    number: int = 0
    points: List[Waypoint] = dataclasses.field(default_factory=list)


@dataclasses.dataclass
class Fix:
    """Where the receiver was at a moment."""

    latitude: float
    longitude: float
    time: Optional[datetime.datetime] = None
    altitude: Optional[float] = None
    quality: Optional[int] = None
    error: Optional[float] = None
    horizontal_error: Optional[float] = None
    vertical_error: Optional[float] = None
    east_speed: Optional[float] = None
    north_speed: Optional[float] = None
    up_speed: Optional[float] = None


@dataclasses.dataclass(frozen=True)
class Report:
    """How a transfer went. Counts are of records; route and track headers are records, too."""

    kind: TransferKind
    ending: Ending
    is_whole: bool
    announced: Optional[int]
    transferred: int
    undecodable: int
    wrong_checksum: int
    unknown: int
    positionless: int
    duplicates: int
    oversized: int
    damaged: int
    acknowledged: int
    unacknowledged: int
    left_out: int
    first_left_out: int
    pid: int
    detail: str

    def __str__(self) -> str:
        count = str(self.transferred)
        if self.announced is not None:
            count += f" of {self.announced}"
        return f"{count} {self.kind.name}: {self.ending.name}" + (
            f" ({self.detail})" if self.detail else "")


class Error(Exception):
    """What this module raises of its own."""


class NotConnected(Error):
    """No receiver was identified; `connection` tells why, as far as it is known."""

    def __init__(self, connection: _marlune.ConnectionReport, boxes: List[str]):
        self.connection = connection
        self.boxes = boxes
        reason = connection.detail or connection.outcome.name.replace("_", " ")
        super().__init__(f"{connection.device or 'no device'}: {reason}")


class Incomplete(Error):
    """A transfer that did not come or go as a whole: `report` tells how it ended, and `records` are
    those that came."""

    def __init__(self, report: Report, records: list):
        self.report = report
        self.records = records
        super().__init__(str(report))


def _fields(native, cls) -> dict:
    return {field.name: getattr(native, field.name)
            for field in dataclasses.fields(cls) if hasattr(native, field.name)}


def _time(seconds: Optional[float]) -> Optional[datetime.datetime]:
    if seconds is None:
        return None
    epoch = datetime.datetime(1970, 1, 1, tzinfo=datetime.timezone.utc)
    return epoch + datetime.timedelta(seconds=seconds)


def _timed(native, cls):
    values = _fields(native, cls)
    values["time"] = _time(values["time"])
    return cls(**values)


def _track(native) -> Track:
    values = _fields(native, Track)
    values["points"] = [_timed(point, TrackPoint) for point in native.points]
    return Track(**values)


def _route(native) -> Route:
    return Route(native.name, native.number,
                 [_timed(point.point, Waypoint) for point in native.points])


def _number(value: Optional[float]) -> str:
    # As the lines have it: never an exponent.
    text = f"{value or 0:.9f}".rstrip("0").rstrip(".")
    return "0" if text == "-0" else text


def _text(value: str) -> str:
    if any(c in value for c in ";\r\n"):
        raise ValueError(f"{value!r}: a text for a receiver holds no ';' and no line end")
    return value


def _waypoint_line(point: Waypoint) -> str:
    symbol = 18 if point.symbol is None else point.symbol
    return ";".join(["W", _text(point.name), _number(point.latitude), _number(point.longitude),
                     _text(point.comment), _number(point.altitude), str(symbol),
                     str(point.display or 0)])


def _point_line(point: TrackPoint) -> str:
    days = (point.time - _DAY_ZERO) / datetime.timedelta(days=1) if point.time else 0
    return ";".join(["T", _number(point.latitude), _number(point.longitude), f"{days:.10f}",
                     _number(point.altitude), "-1" if point.segment_start else "0"])


def _route_lines(routes: Iterable[Route]) -> List[str]:
    lines = []
    for route in routes:
        lines.append(f"R;{route.number};{_text(route.name)}")
        lines.extend(_waypoint_line(point) for point in route.points)
    return lines


def _track_lines(tracks: Iterable[Track]) -> List[str]:
    lines = []
    for track in tracks:
        lines.append(f"N;{_text(track.name)}")
        lines.extend(_point_line(point) for point in track.points)
    return lines


class VirtualReceiver:
    """A receiver inside this program, to try everything without hardware: pass it to open()."""

    def __init__(self, family: str, unit: str, mark: str):
        self._native = _marlune.VirtualReceiver(family, unit)
        self.mark = mark

    @property
    def path(self) -> str:
        """What a program opens as the serial port."""
        return self._native.path

    @property
    def lines(self) -> List[str]:
        """What it holds now, as the control's text lines."""
        return self._native.lines


def virtual(unit: str = "map162") -> VirtualReceiver:
    """Starts a virtual receiver by the name of its unit ("map162", "etrex", "gps315", "sp24")."""
    family, mark = _marlune.family_of_unit(unit)
    return VirtualReceiver(family, unit, mark)


def open(port: Union[str, VirtualReceiver] = "auto", mark: Optional[str] = None, *,
         patience: float = 30) -> Receiver:
    """Connects to a receiver and identifies it; raises NotConnected otherwise.

    port: a device path, "virtual" or "virtual:UNIT", what virtual() returned, or "auto", which asks
    every port who is there and takes the only receiver found. mark: the receiver's family, "GRM",
    "GRM_USB", "MGN" (or "MGN;9600") or "MLR"; by default the one found, else "GRM". patience: how
    many seconds a wait may go without a byte; 0 for ever.
    """
    if isinstance(port, str) and (port == "virtual" or port.startswith("virtual:")):
        port = virtual(port[len("virtual:"):] or "map162")
    if isinstance(port, VirtualReceiver):
        return Receiver(port.path, mark or port.mark, patience, keep=port)
    if port == "auto":
        found = _marlune.find()
        if len(found) != 1:
            told = ", ".join(path for path, _ in found) or "none"
            raise Error(f"one receiver was looked for, and found: {told}")
        port, found_mark = found[0]
        mark = mark or found_mark
    return Receiver(os.fspath(port), mark or "GRM", patience)


class Receiver:
    """A connected receiver. Use it as a context manager, or call close().

    It serves one thread at a time. While a transfer runs, other threads go on, and Ctrl-C ends it.
    """

    def __init__(self, path: str, mark: str, patience: float, keep: object = None):
        self._keep = keep
        self._control = _marlune.Control()
        self._boxes: List[str] = []
        self.on_event: Optional[Callable[..., None]] = None
        self._control.on_box(lambda text, icon: self._boxes.append(text))
        self._control.on_event(self._event)
        self._control.set_patience(patience)
        self._control.bind_port(path)
        self._control.SetGpsMark(mark)
        self._fixes: Optional[queue.SimpleQueue] = None
        if not self._control.gpsConnect():
            raise NotConnected(self._control.last_connection, self._boxes)

    def __enter__(self) -> Receiver:
        return self

    def __exit__(self, *_: object) -> None:
        self.close()

    def close(self) -> None:
        """Ends the connection. Closing twice does no harm."""
        self._control.gpsDisconnect()

    @property
    def identity(self) -> str:
        """Who the receiver is, in the control's words."""
        return self._control.getIdent()

    @property
    def protocols(self) -> str:
        """What it can do, as its list of protocol tags or a sentence."""
        return self._control.getProtocoles()

    @property
    def connection(self) -> _marlune.ConnectionReport:
        return self._control.last_connection

    @property
    def report(self) -> Report:
        """How the last transfer went."""
        return Report(**_fields(self._control.last_transfer, Report))

    @property
    def messages(self) -> List[str]:
        """The control's message boxes so far, in French."""
        return list(self._boxes)

    def waypoints(self) -> List[Waypoint]:
        self._control.getWaypts()
        return self._whole([_timed(each, Waypoint) for each in self._control.records.waypoints])

    def tracks(self) -> List[Track]:
        self._control.getTracks()
        return self._whole([_track(each) for each in self._control.records.tracks])

    def routes(self) -> List[Route]:
        """Magellan receivers tell the names of the points only: their waypoints are read first."""
        self._control.GetRoutes()
        if self._control.last_transfer.ending == Ending.needs_waypoints:
            self.waypoints()
            self._control.GetRoutes()
        return self._whole([_route(each) for each in self._control.records.routes])

    def proximities(self) -> List[Waypoint]:
        self._control.getProximites()
        return self._whole([_timed(each, Waypoint) for each in self._control.records.proximities])

    def send_waypoints(self, waypoints: Iterable[Waypoint]) -> Report:
        """Texts are cut to what the receiver holds; raises Incomplete when not all were taken."""
        return self._send(self._control.SendWaypts, map(_waypoint_line, waypoints))

    def send_routes(self, routes: Iterable[Route]) -> Report:
        return self._send(self._control.SendRoutes, _route_lines(routes))

    def send_tracks(self, tracks: Iterable[Track]) -> Report:
        return self._send(self._control.SendTraces, _track_lines(tracks))

    def time(self) -> datetime.datetime:
        """The receiver's clock."""
        days = self._control.GetTime()
        self._whole([])
        return _DAY_ZERO + datetime.timedelta(days=days)

    def position(self) -> Fix:
        self._control.getPosition()
        self._whole([])
        return _timed(self._control.fix, Fix)

    def follow(self) -> Iterator[Fix]:
        """The receiver's positions as they come, until it falls silent or the iterator is closed.

        for fix in gps.follow(): ...
        """
        return self._live(self._control.StartPvtData, self._control.StopPvtData, "PvtData",
                          lambda line: _timed(self._control.fix, Fix))

    def listen(self, code: str = "", seconds: int = 10) -> Iterator[str]:
        """The sentences of an NMEA stream that contain `code` and a position, until none came for
        so many seconds. The connection ends with it."""
        return self._live(lambda: self._control.StartNMEA(code, seconds), self._control.StopNMEA,
                          "PhraseNMEA", lambda sentence: sentence.rstrip("\r\n"))

    def stop(self) -> None:
        """Ends whatever runs, from another thread or a handler."""
        self._control.request_stop()

    def _event(self, name: str, *parameters: object) -> None:
        if self._fixes is not None and name == self._fix_event:
            self._fixes.put(self._read_fix(parameters[0]))
        if self.on_event is not None:
            self.on_event(name, *parameters)

    def _live(self, start, stop, event: str, read) -> Iterator:
        # The control runs on a thread of its own meanwhile: an iterator is asked, it does not call.
        items: queue.SimpleQueue = queue.SimpleQueue()
        end = object()
        self._fixes, self._fix_event, self._read_fix = items, event, read

        def run() -> None:
            try:
                start()
            finally:
                items.put(end)

        runner = threading.Thread(target=run, daemon=True)
        runner.start()
        try:
            while (item := items.get()) is not end:
                yield item
        finally:
            stop()
            runner.join()
            self._fixes = None

    def _whole(self, records: list) -> list:
        report = self.report
        if not report.is_whole:
            raise Incomplete(report, records)
        return records

    def _send(self, member, lines: Iterable[str]) -> Report:
        with tempfile.TemporaryDirectory(prefix="marlune-") as folder:
            file = pathlib.Path(folder, "Marlune.txt")
            # With this mark the control takes the file for UTF-8.
            file.write_text("".join(line + "\r\n" for line in lines), encoding="utf-8-sig",
                            newline="")
            member(str(file))
        self._whole([])
        return self.report
