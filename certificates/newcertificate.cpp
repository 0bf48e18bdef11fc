#include "certificates/newcertificate.h"

#include "certificates/certificatetext.h"
#include "widgets/displaytext.h"

#include <QCoreApplication>
#include <QHostAddress>
#include <QStringList>

#include <algorithm>

namespace {

struct Failure
{
    Q_DECLARE_TR_FUNCTIONS(NewCertificate)

public:
    static QString ofKey(const QString& reasons)
    {
        return tr("The key pair could not be created.\n%1").arg(reasons);
    }
    static QString ofCertificate(const QString& reasons)
    {
        return tr("The certificate could not be created.\n%1").arg(reasons);
    }
    static QString ofContent(const QStringList& fields)
    {
        return tr("The certificate would not hold these entries as they stand:\n%1")
            .arg(fields.join(QLatin1Char('\n')));
    }

    /// The alternative names that a certificate says otherwise.
    static QStringList differences(const NewCertificateOrder& order,
                                   const UaPkiCertificate& certificate);
};

QString reasonsOf(const UaPkiErrorList& object)
{
    QStringList lines;
    for (const UaString& error : object.getErrors()) {
        lines.append(toQString(error));
    }
    return lines.join(QLatin1Char('\n'));
}

QHostAddress addressOf(const OpcUa_String& text)
{
    return QHostAddress(toQString(UaString(&text)));
}

/// Whether both lists have the same addresses, which are written in different ways.
bool haveSameAddresses(const UaStringArray& left, const UaStringArray& right)
{
    return std::equal(
        left.begin(), left.end(), right.begin(), right.end(),
        [](const OpcUa_String& a, const OpcUa_String& b) { return addressOf(a) == addressOf(b); });
}

QStringList Failure::differences(const NewCertificateOrder& order,
                                 const UaPkiCertificate& certificate)
{
    const UaPkiCertificateInfo info = certificate.info();
    QStringList fields;
    if (info.uri != order.info.uri) {
        fields.append(tr("Application URI: %1").arg(lineForDisplay(toQString(order.info.uri))));
    }
    if (info.dnsNames != order.info.dnsNames) {
        fields.append(
            tr("Domain Names: %1").arg(lineForDisplay(toJoinedText(order.info.dnsNames))));
    }
    if (!haveSameAddresses(info.ipAddresses, order.info.ipAddresses)) {
        fields.append(
            tr("IP Addresses: %1").arg(lineForDisplay(toJoinedText(order.info.ipAddresses))));
    }
    return fields;
}

NewCertificate failed(const QString& failure)
{
    return {{}, {}, failure};
}

} // namespace

NewCertificate makeNewCertificate(const NewCertificateOrder& order)
{
    UaPkiRSAKeyPair keyPair(order.keySize);
    if (order.keySize <= 0 || keyPair.publicKey().keySize() != order.keySize) {
        return failed(Failure::ofKey(reasonsOf(keyPair)));
    }
    UaPkiCertificate certificate(order.info, order.subject, keyPair, false,
                                 order.signatureAlgorithm);
    if (certificate.isNull()) {
        return failed(Failure::ofCertificate(reasonsOf(certificate)));
    }
    if (const QStringList fields = Failure::differences(order, certificate); !fields.isEmpty()) {
        return failed(Failure::ofContent(fields));
    }
    return {std::move(keyPair), std::move(certificate), QString()};
}
