#pragma once

#include "console/endpointrecord.h"

#include <QList>

#include <optional>

class QDomElement;

// The endpoints and the user logon in a configuration file, read and written over its document. The
// element given is always UaServerConfig; a null one has no endpoints and takes none.

/// Reads the endpoints in the order of the file. A missing element reads as empty text; an endpoint
/// without a stack URL binds to its URL. Settings of the same policy become one record with the
/// modes of all; a mode of another text than the three known ones, which count in this case only,
/// adds nothing.
[[nodiscard]] QList<EndpointRecord> readEndpoints(const QDomElement& serverConfig);

/// The TCP port of each endpoint in the order of the file: that of its stack URL element when it has
/// one, otherwise of its URL. 0 when the URL names none.
[[nodiscard]] QList<int> readEndpointPorts(const QDomElement& serverConfig);

/// Replaces all endpoints. Each new one is a copy of the file's first with its own URL, stack URL and
/// security settings: whatever else an endpoint holds is taken from the first one for all of them,
/// and they stand behind everything else. The stack URL goes in only where it differs from the URL.
/// A URL element without a text takes none. Without an endpoint to copy nothing is written.
///
/// Returns what readEndpoints() reads from the element now. Mostly that is what was given, and the
/// document needn't be walked again.
QList<EndpointRecord> writeEndpoints(QDomElement serverConfig,
                                     const QList<EndpointRecord>& endpoints);

/// Which logon the server allows.
struct UserLogon
{
    bool isAnonymousAllowed = false;
    bool isUserPasswordAllowed = false;
};

/// Null when the element of the user tokens is absent. One of its two elements that is missing, or
/// says anything but "true" in any case, reads as false.
[[nodiscard]] std::optional<UserLogon> readUserLogon(const QDomElement& serverConfig);

/// Elements that are missing or have no text take nothing.
void writeUserLogon(const QDomElement& serverConfig, const UserLogon& logon);
