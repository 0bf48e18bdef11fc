#pragma once

#include "pki/uapkicertificate.h"

#include <map>
#include <string>
#include <vector>

/// The fields of a certificate in a form that can be compared: as our class tells them, or as a program
/// prints them. A program's view has what that program prints.
using CertificateView = std::map<std::string, std::string>;

[[nodiscard]] CertificateView viewOf(const UaPkiCertificate& certificate);

/// What `openssl x509` prints about each of some files in DER form; runs it once for each.
[[nodiscard]] std::vector<CertificateView> viewsOfOpenssl(const std::string& directory,
                                                          const std::vector<std::string>& files);

/// What `certtool` prints about a file in DER form.
[[nodiscard]] CertificateView viewOfCerttool(const std::string& path);

/// The fields of a view that another one has, too.
[[nodiscard]] CertificateView commonWith(const CertificateView& view, const CertificateView& other);
