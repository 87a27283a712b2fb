#pragma once
// WS-Discovery on the wire: probes from one socket per network card to the
// multicast group, answers by unicast to the probe's source port, read
// for a fixed time.
//
// Tests never reach the group: VX_ONVIF_PROBE_TARGETS ("host:port,..."),
// meant for tests only, sends the probes by unicast to those addresses
// instead, and VX_ONVIF_DISCOVERY_PORT replaces 3702 for the unicast probe
// of the link call.
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "discovery_messages.h"
#include "udp_socket.h"

namespace onvif {

// The targets of VX_ONVIF_PROBE_TARGETS: nothing when it is unset, an empty
// list when it is set but unreadable (then nothing is sent at all).
std::optional<std::vector<Endpoint>> probeTargetsFromEnvironment();
std::uint16_t discoveryPort();

// Probes for both device types and lists the cameras that answered within
// `listenMs`. With no targets, the probes go to 239.255.255.250:3702 from
// every up, non-loopback IPv4 interface.
std::vector<FoundCamera> scanCameras(const std::optional<std::vector<Endpoint>>& unicastTargets, int listenMs);

// One unicast probe pair to a camera; the XAddrs of its first match, or
// nothing within `waitMs`.
std::vector<std::string> probeCamera(const Endpoint& camera, int waitMs);

} // namespace onvif
