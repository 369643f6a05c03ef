# The native half. Programs use what marlune/__init__.py offers over it.
from typing import Any, Callable, List, Optional, Tuple
import enum

def version() -> str: ...
def find() -> List[Tuple[str, str]]: ...
def family_of_unit(unit: str) -> Tuple[str, str]: ...

class TransferKind(enum.Enum):
    none: int
    waypoints: int
    tracks: int
    routes: int
    proximities: int
    time: int
    position: int
    real_time: int
    sentences: int

class Ending(enum.Enum):
    complete: int
    nothing_there: int
    interrupted: int
    end_missing: int
    cancelled: int
    disconnected: int
    device_gone: int
    refused: int
    protocol_error: int
    not_offered: int
    file_error: int
    unsendable: int
    no_session: int
    needs_waypoints: int

class ConnectionOutcome(enum.Enum):
    none: int
    identified: int
    opened: int
    not_opened: int
    silent: int
    other_language: int
    protocol_error: int
    abandoned: int

class CapabilitySource(enum.Enum):
    none: int
    announced: int
    table: int
    generic: int

class ConnectionReport:
    outcome: ConnectionOutcome
    protocol_code: str
    device: str
    system_error: int
    detail: str
    pid: int
    damaged: int
    capabilities: CapabilitySource
    is_connected: bool

class VirtualReceiver:
    def __init__(self, family: str, unit: str) -> None: ...
    path: str
    lines: List[str]
    complaints: List[str]

class Control:
    records: Any
    fix: Any
    last_transfer: Any
    last_connection: ConnectionReport
    def bind_port(self, device: str) -> None: ...
    def bind_drive(self, folder: str) -> None: ...
    def set_patience(self, seconds: float) -> None: ...
    def on_box(self, handler: Callable[[str, str], None]) -> None: ...
    def on_event(self, handler: Optional[Callable[..., None]]) -> None: ...
    def request_stop(self) -> None: ...
    def SetGpsMark(self, value: str) -> None: ...
    def gpsConnect(self) -> bool: ...
    def gpsDisconnect(self) -> None: ...
    def getWaypts(self) -> bool: ...
    def getTracks(self) -> bool: ...
    def GetRoutes(self) -> bool: ...
    def getProximites(self) -> bool: ...
    def SendWaypts(self, Fic: str) -> bool: ...
    def SendRoutes(self, Fic: str) -> bool: ...
    def SendTraces(self, Fic: str) -> bool: ...
    def StartPvtData(self) -> bool: ...
    def StartNMEA(self, NMEACode: str, Delai: int) -> bool: ...
    def GetTime(self) -> float: ...
    def getIdent(self) -> str: ...
    def getProtocoles(self) -> str: ...
    def getPosition(self) -> str: ...
    def StopPvtData(self) -> None: ...
    def StopNMEA(self) -> None: ...
    def StopTransfert(self) -> None: ...
