#pragma once

#include <QByteArray>
#include <QDomDocument>
#include <QString>

/// One operation on the server configuration file: read it, touch the document, write it back. Make
/// one for each operation and drop it; nothing of the document is kept between operations, and the
/// file is the console's only state.
///
/// Nothing here reports to the operator. A file that can't be read is the same as an empty one to
/// every reader.
class ConfigFile
{
public:
    enum class ReadResult
    {
        NotOpened, ///< Missing, no permission, or no regular file.
        Refused,   ///< Beyond ConfigLimits: neither to be shown nor to be written.
        NotParsed, ///< Not well-formed; the document is empty.
        Parsed     ///< The document holds what the file holds.
    };

    explicit ConfigFile(QString path);

    /// Reads and parses the file as UTF-8, whatever its own declaration says, without namespaces. A
    /// file that still holds the very bytes of this object's last write() isn't parsed again.
    [[nodiscard]] ReadResult read();

    /// Writes the whole document with an indent of 2. The text is built and looked at first: one
    /// that couldn't be read back (a character that XML forbids, a size beyond ConfigLimits) is not
    /// written. Then the file is truncated and gets the text in one write; there is no temporary
    /// file and no backup. When that write fails, as on a full disk, the bytes that read() saw are
    /// put back as far as the system lets it. Returns whether the file holds the document.
    [[nodiscard]] bool write();

    [[nodiscard]] QDomDocument& document() { return m_document; }

    /// Shorthand for the document element.
    [[nodiscard]] QDomElement root() const { return m_document.documentElement(); }

private:
    QString m_path;
    QByteArray m_original; ///< What the file held, byte by byte, at the last read or write.
    QByteArray m_bytes;    ///< The same as text, without carriage returns.
    QDomDocument m_document;
    bool m_isWritten = false; ///< m_bytes are the text of m_document.
    bool m_hasInstructions = false;
    bool m_isPlain = false; ///< The text form of m_document needs no care.
};

/// Whether the file can be opened for writing. No byte is written.
[[nodiscard]] bool isConfigFileWritable(const QString& path);
