#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <optional>

// Certificates and revocation lists for tests, put together with OpenSSL itself. Moments are seconds
// from now.

inline constexpr qint64 Day = 86400;

/// A name with a field for each column that shows one.
struct TestName
{
    QString commonName;
    QString organization;
    QString organizationUnit;
    QString locality;
    QString state;
    QString country;
};

struct TestCertificate
{
    QString name = QStringLiteral("Name"); ///< The subject's commonName.
    TestName issuer = {QStringLiteral("Issuer"),   QStringLiteral("Organization"),
                       QStringLiteral("Unit"),     QStringLiteral("Locality"),
                       QStringLiteral("Province"), QStringLiteral("DE")};
    QString uri;
    QStringList dnsNames;
    QStringList ipAddresses;
    qint64 from = -Day;
    qint64 to = 365 * Day;

    [[nodiscard]] QByteArray der() const;
    [[nodiscard]] QByteArray pem() const;
};

struct TestRevocationList
{
    std::optional<int> number = 7;
    TestName issuer = {QStringLiteral("Issuer"),   QStringLiteral("Organization"),
                       QStringLiteral("Unit"),     QStringLiteral("Locality"),
                       QStringLiteral("Province"), QStringLiteral("DE")};
    qint64 from = -Day;
    std::optional<qint64> nextUpdate = 365 * Day;

    [[nodiscard]] QByteArray der() const;
    [[nodiscard]] QByteArray pem() const;
};
