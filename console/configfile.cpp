#include "console/configfile.h"

#include "console/configdom.h"
#include "console/configguard.h"

#include <QFile>
#include <QFileInfo>
#include <QTextStream>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

/// A pipe or a device would block the opening or never end.
bool isOtherThanFile(const QString& path)
{
    const QFileInfo info(path);
    return info.exists() && !info.isFile();
}

QString decode(const QByteArray& bytes)
{
    QTextStream stream(bytes);
    stream.setEncoding(QStringConverter::Utf8);
    return stream.readAll();
}

bool parse(const QString& text, QDomDocument& document)
{
    if (!document.setContent(text)) {
        document = QDomDocument();
        return false;
    }
    return true;
}

enum class WriteResult
{
    NotOpened,
    Incomplete,
    Written
};

WriteResult writeBytes(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    if (isOtherThanFile(path) ||
        !file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Text)) {
        return WriteResult::NotOpened;
    }
    // A full disk shows in the write, the flush or the close.
    const bool isWritten = file.write(bytes) == bytes.size() && file.flush();
    file.close();
    return isWritten && file.error() == QFileDevice::NoError ? WriteResult::Written
                                                             : WriteResult::Incomplete;
}

} // namespace

ConfigFile::ConfigFile(QString path)
    : m_path(std::move(path))
{
}

ConfigFile::ReadResult ConfigFile::read()
{
    QFile file(m_path);
    if (isOtherThanFile(m_path) || !file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        return ReadResult::NotOpened;
    }
    if (file.size() > ConfigLimits::maxBytes) {
        return ReadResult::Refused;
    }
    QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError) {
        return ReadResult::NotOpened;
    }
    if (std::exchange(m_isWritten, false) && bytes == m_bytes) {
        return ReadResult::Parsed;
    }

    m_bytes = std::move(bytes);
    m_document = QDomDocument();
    const QString text = decode(m_bytes);
    if (!isWithinLimits(text)) {
        return ReadResult::Refused;
    }
    if (!parse(text, m_document)) {
        return ReadResult::NotParsed;
    }
    if (text.contains("<!ENTITY"_L1) && !isShallow(m_document, ConfigLimits::maxDepth)) {
        return ReadResult::Refused;
    }
    return ReadResult::Parsed;
}

bool ConfigFile::write()
{
    normaliseAttributes(m_document);
    const QString text = m_document.toString(2);
    QByteArray bytes = text.toUtf8();
    if (bytes.size() > ConfigLimits::maxBytes || !isXmlText(text)) {
        return false;
    }
    const WriteResult result = writeBytes(m_path, bytes);
    if (result == WriteResult::Incomplete) {
        writeBytes(m_path, m_bytes);
    }
    if (result != WriteResult::Written) {
        return false;
    }
    m_bytes = std::move(bytes);
    m_isWritten = true;
    return true;
}

bool isConfigFileWritable(const QString& path)
{
    QFile file(path);
    return !isOtherThanFile(path) &&
           file.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Text);
}
