#pragma once

#include <QString>

class QDomDocument;

/// Puts the host name where the document holds "[NodeName]" in the URL and the stack URL of an
/// endpoint, and over the whole text of `GroupHost`.
void expandHostName(const QDomDocument& document, const QString& hostName);

/// What comparing the remembered host name with the present one came to.
struct HostNameCheck
{
    bool isChanged = false; ///< A name was remembered, and it differs as text.
    bool isStored = false;  ///< The document has taken the present name and wants to be written.
};

/// Compares the host name with the one that the document remembers, and makes the document remember
/// the present one. A document that remembers none is no change.
HostNameCheck checkHostName(QDomDocument& document, const QString& hostName);
