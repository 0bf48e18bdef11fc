#pragma once

#include <string>
#include <vector>

/// What a protocol analyser sees in a packet: a line for each thing that it shows, indented by its
/// depth. "opcua.EndpointUrl=opc.tcp://host" is a field with a value; a line without a name opens a
/// structure. A line "proto ..." that isn't the protocol's own is a complaint.
using DissectedPacket = std::vector<std::string>;

/// Lets tshark read a capture file, and gives the lines of its OPC UA part for each packet. Throws
/// when the program can't be run.
[[nodiscard]] std::vector<DissectedPacket> dissect(const std::string& path);
