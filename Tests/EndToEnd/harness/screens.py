"""An X server with screens that come and go: a VNC server, and as much of its protocol as adding and removing takes."""

import os
import socket
import struct

from .display import Display
from .waiting import Failure, expect, until

EXTENDED_DESKTOP_SIZE = -308
VERSION, NO_SECURITY, SHARED = b"RFB 003.008\n", b"\1", b"\1"


class SeveralScreens(Display):
    """A display with several screens. `screens`: their boxes, the primary one first."""

    def __init__(self, processes, screens):
        path = os.path.join(processes.folder, "vnc")
        size = f"{screens[0].width}x{screens[0].height}"
        super().__init__(processes, ["Xtigervnc", "-geometry", size, "-depth", "24", "-SecurityTypes", "None",
                                     "-rfbunixpath", path, "-rfbport", "-1", "-AcceptSetDesktopSize=1"])
        self._stream = socket.socket(socket.AF_UNIX)
        self._stream.connect(path)
        self._shake_hands()
        self.set_screens(screens)

    def _read(self, count):
        data = b""
        while len(data) < count:
            piece = self._stream.recv(count - len(data))
            if not piece:
                raise Failure("the VNC server closed its connection")
            data += piece
        return data

    def _shake_hands(self):
        self._read(len(VERSION))
        self._stream.sendall(VERSION)
        expect(NO_SECURITY in self._read(self._read(1)[0]), "the VNC server wants a password")
        self._stream.sendall(NO_SECURITY)
        self._read(4)
        self._stream.sendall(SHARED)
        header = self._read(24)
        self._read(struct.unpack(">I", header[20:])[0])
        self._stream.sendall(struct.pack(">BxHi", 2, 1, EXTENDED_DESKTOP_SIZE))

    def set_screens(self, screens):
        """Replaces all screens."""
        width, height = max(box.right for box in screens), max(box.bottom for box in screens)
        layout = b"".join(struct.pack(">IHHHHI", place, *box, 0) for place, box in enumerate(screens))
        self._stream.sendall(struct.pack(">BxHHBx", 251, width, height, len(screens)) + layout)
        until("the screens are as wanted", lambda: self._outputs() == len(screens))

    def _outputs(self):
        """The number of enabled screens."""
        resources = self.root.xrandr_get_screen_resources()
        crtcs = [self.x.xrandr_get_crtc_info(crtc, resources.config_timestamp) for crtc in resources.crtcs]
        return sum(crtc.mode != 0 for crtc in crtcs)

    def output(self, place):
        return f"VNC-{place}"
