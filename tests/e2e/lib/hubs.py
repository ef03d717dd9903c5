"""Which kind of Hub drives a binary."""

from pathlib import Path

from . import windows_broker_access
from .broker_access import BrokerAccess
from .hub import Hub
from .windows_broker_access import WindowsBrokerAccess
from .windows_hub import WindowsHub


def is_for_windows(binary) -> bool:
    return Path(binary).suffix == ".exe"


def prepare(binary, scratch: Path) -> None:
    """What is done once before the first Hub of a binary is made. Every home has to lie below the scratch folder."""
    if is_for_windows(binary):
        WindowsHub.prepare(binary, scratch)
        windows_broker_access.build(WindowsHub.template / "drive_c")


def hub_for(binary, home: Path, screen) -> Hub:
    """A Hub that was never started, with a home that does not exist yet."""
    return (WindowsHub if is_for_windows(binary) else Hub)(binary, home, screen)


def broker_access_for(hub: Hub, folder: Path):
    """How to reach the broker of this Hub; made before its first start. `folder` does not exist yet, and has a short path: sockets need
    one."""
    return WindowsBrokerAccess(hub) if isinstance(hub, WindowsHub) else BrokerAccess(hub, folder)
