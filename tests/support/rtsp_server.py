#!/usr/bin/python3
"""A live RTSP test camera on loopback: a moving test pattern, H.264 over RTP,
served at rtsp://127.0.0.1:<port>/test by GStreamer's RTSP server.

    rtsp_server.py [port]     port 0 or none: a free one

Prints "ready <port>" once it listens, then serves until it is killed.
Exit code 3 when the GStreamer RTSP server can't be imported."""
import sys

try:
    import gi
    gi.require_version("Gst", "1.0")
    gi.require_version("GstRtsp", "1.0")
    gi.require_version("GstRtspServer", "1.0")
    from gi.repository import GLib, Gst, GstRtsp, GstRtspServer
except (ImportError, ValueError) as error:
    print("no-rtsp-server %s" % error, flush=True)
    sys.exit(3)

PIPELINE = ("( videotestsrc is-live=true pattern=ball "
            "! video/x-raw,width=320,height=240,framerate=15/1 "
            "! x264enc tune=zerolatency speed-preset=ultrafast key-int-max=15 "
            "! rtph264pay name=pay0 pt=96 )")


def main():
    port = int(sys.argv[1]) if len(sys.argv) > 1 else 0
    Gst.init(None)
    server = GstRtspServer.RTSPServer()
    server.set_address("127.0.0.1")
    server.set_service(str(port))
    factory = GstRtspServer.RTSPMediaFactory()
    factory.set_launch(PIPELINE)
    factory.set_shared(True)
    # Unicast only: the client is on loopback, nothing goes to a group.
    factory.set_protocols(GstRtsp.RTSPLowerTrans.UDP | GstRtsp.RTSPLowerTrans.TCP)
    server.get_mount_points().add_factory("/test", factory)
    if server.attach(None) == 0:
        print("failed to listen on 127.0.0.1:%d" % port, flush=True)
        sys.exit(2)
    print("ready %d" % server.get_bound_port(), flush=True)
    GLib.MainLoop().run()


if __name__ == "__main__":
    main()
