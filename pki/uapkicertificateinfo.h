#pragma once

#include "base/uaarrays.h"
#include "base/uastring.h"
#include "platform/types.h"

/// What a certificate says beyond its names: the entries of its subjectAltName extension (RFC 5280,
/// 4.2.1.6), and what creation needs beside them.
struct UaPkiCertificateInfo
{
    UaString uri;              ///< The application's URI.
    UaStringArray ipAddresses; ///< IPv4 and IPv6 addresses as text.
    UaStringArray dnsNames;    ///< Host names.
    UaString email;            ///< E-mail address.

    /// Seconds that a certificate will be valid from its creation on; 0 when one was read.
    OpcUa_UInt32 validTime = 0;
    /// Serial number; at creation 0 stands for the current time in seconds since 1970. -1 when one was
    /// read that doesn't fit; UaPkiCertificate::serialNumberString tells them all.
    OpcUa_Int32 serialNumber = 0;
};
