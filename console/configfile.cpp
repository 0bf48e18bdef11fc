#include "console/configfile.h"

#include "console/configdom.h"
#include "console/configguard.h"
#include "console/configtext.h"

#include <QFile>
#include <QFileInfo>
#include <QStringDecoder>

#include <optional>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

/// A pipe or a device would block the opening or never end.
bool isOtherThanFile(const QString& path)
{
    const QFileInfo info(path);
    return info.exists() && !info.isFile();
}

/// What a file opened as text gives on every system: no carriage return, wherever it stands.
QByteArray withoutCarriageReturns(const QByteArray& bytes)
{
    return bytes.contains('\r') ? QByteArray(bytes).replace("\r", "") : bytes;
}

/// As a text stream set to UTF-8 does: only a byte order mark says otherwise.
QString decode(const QByteArray& bytes)
{
    const auto marked = QStringConverter::encodingForData(bytes);
    return QStringDecoder(marked.value_or(QStringConverter::Utf8))(bytes);
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

WriteResult writeBytes(const QString& path, const QByteArray& bytes, QIODevice::OpenMode mode = {})
{
    QFile file(path);
    if (isOtherThanFile(path) || !file.open(QIODevice::WriteOnly | QIODevice::Truncate | mode)) {
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
    // Opened as text it would not tell the bytes that a failed write has to put back.
    if (isOtherThanFile(m_path) || !file.open(QIODevice::ReadOnly)) {
        return ReadResult::NotOpened;
    }
    if (file.size() > ConfigLimits::maxBytes) {
        return ReadResult::Refused;
    }
    m_original = file.readAll();
    if (file.error() != QFileDevice::NoError) {
        return ReadResult::NotOpened;
    }
    QByteArray bytes = withoutCarriageReturns(m_original);
    if (std::exchange(m_isWritten, false) && bytes == m_bytes) {
        return ReadResult::Parsed;
    }

    m_bytes = std::move(bytes);
    m_document = QDomDocument();
    const QString text = decode(m_bytes);
    const MarkupExtent extent = measureMarkup(text);
    if (!extent.isWithinLimits()) {
        return ReadResult::Refused;
    }
    if (!parse(text, m_document)) {
        return ReadResult::NotParsed;
    }
    m_hasInstructions = extent.hasInstructions;
    m_isPlain = extent.attributes <= 1 && !extent.declaresEntities && !extent.hasInstructions &&
                extent.longestText <= TextForm::pieceSize;
    return extent.declaresEntities && !isShallow(m_document, ConfigLimits::maxDepth)
               ? ReadResult::Refused
               : ReadResult::Parsed;
}

bool ConfigFile::write()
{
    const std::optional<QString> text =
        m_isPlain ? m_document.toString(2) : stableTextForm(m_document);
    if (!text || !isXmlText(*text)) {
        return false;
    }
    QByteArray bytes = text->toUtf8();
    if (bytes.size() > ConfigLimits::maxBytes) {
        return false;
    }
    const WriteResult result = writeBytes(m_path, bytes, QIODevice::Text);
    if (result == WriteResult::Incomplete) {
        writeBytes(m_path, m_original);
    }
    if (result != WriteResult::Written) {
        return false;
    }
    m_original = bytes;
    m_bytes = std::move(bytes);
    m_isWritten = !m_hasInstructions; // whose line breaks belong to the texts behind them
    return true;
}

bool isConfigFileWritable(const QString& path)
{
    QFile file(path);
    return !isOtherThanFile(path) &&
           file.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Text);
}
