// Bytes as a configuration file, through every reader and writer of the console: what was written
// reads back the same, and saving twice gives the same bytes.

#include "certificates/certificatelocationinfo.h"
#include "console/configdom.h"
#include "console/configelements.h"
#include "console/configfile.h"
#include "console/configreaders.h"
#include "console/endpointconfig.h"
#include "console/hostname.h"
#include "console/traceconfig.h"
#include "console/windowgeometry.h"
#include "fuzz/require.h"

#include <QFile>
#include <QHashSeed>
#include <QTemporaryDir>

using ReadResult = ConfigFile::ReadResult;

namespace {

/// A new value goes into an element's first child alone, so that texts of several children grow with
/// each save. Only without such elements are the properties below promised.
bool hasPlainTexts(const QDomNode& parent)
{
    for (QDomNode node = parent.firstChild(); !node.isNull(); node = node.nextSibling()) {
        const bool isMixed =
            !node.isElement() && parent.isElement() && parent.childNodes().count() > 1;
        if (isMixed || !hasPlainTexts(node)) {
            return false;
        }
    }
    return true;
}

QByteArray bytesOf(const QString& path)
{
    QFile file(path);
    require(file.open(QIODevice::ReadOnly));
    return file.readAll();
}

void start(QDomDocument& document)
{
    expandHostName(document, QStringLiteral("host"));
    checkHostName(document, QStringLiteral("host"));
    writeWindowGeometry(document, "geometry");
    CertificateLocationInfo info;
    QString texts[6];
    static_cast<void>(readCertificateLocations(document.documentElement(), {}, info));
    static_cast<void>(readCertificateSettings(document.documentElement(), {}, texts[0], texts[1],
                                              texts[2], texts[3], texts[4], texts[5]));
}

void saveTabs(const QDomElement& config)
{
    writeEndpoints(config, readEndpoints(config));
    writeUserLogon(config, readUserLogon(config).value_or(UserLogon{}));
    const QDomElement trace = config.firstChildElement(ConfigElement::Trace);
    writeTraceConfig(trace, readTraceConfig(trace, QStringLiteral("/t")), QStringLiteral("/t"));
}

/// Returns whether the file was written.
bool startAndSave(const QString& path)
{
    ConfigFile file(path);
    require(file.read() == ReadResult::Parsed);
    start(file.document());
    saveTabs(file.root().firstChildElement(ConfigElement::UaServerConfig));
    return file.write();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const bool isSeedFixed = (QHashSeed::setDeterministicGlobalSeed(), true);
    static const QTemporaryDir directory;
    require(isSeedFixed);
    const QString path = directory.filePath(QStringLiteral("ServerConfig.xml"));
    QFile file(path);
    require(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(reinterpret_cast<const char*>(data), static_cast<qint64>(size));
    file.close();

    ConfigFile config(path);
    if (config.read() != ReadResult::Parsed || !startAndSave(path)) {
        return 0;
    }
    ConfigFile written(path);
    require(written.read() == ReadResult::Parsed);
    if (!hasPlainTexts(written.document())) {
        return 0;
    }
    const QByteArray first = bytesOf(path);
    const auto endpoints =
        readEndpoints(written.root().firstChildElement(ConfigElement::UaServerConfig));
    require(startAndSave(path));
    require(bytesOf(path) == first);
    require(written.read() == ReadResult::Parsed);
    require(readEndpoints(written.root().firstChildElement(ConfigElement::UaServerConfig)) ==
            endpoints);
    return 0;
}
