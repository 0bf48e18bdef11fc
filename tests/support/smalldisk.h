#pragma once

#include <QString>
#include <QTemporaryDir>

/// A file system of a few kilobytes, so that a test can fill it or make it read-only. It is mounted
/// while the object lives; that takes root. A test asks isMounted() and skips itself with reason()
/// when it isn't.
class SmallDisk
{
public:
    explicit SmallDisk(int kilobytes);
    ~SmallDisk();
    SmallDisk(const SmallDisk&) = delete;
    SmallDisk& operator=(const SmallDisk&) = delete;

    [[nodiscard]] bool isMounted() const { return m_isMounted; }
    [[nodiscard]] QString reason() const { return m_reason; }

    /// The path of a file on the disk.
    [[nodiscard]] QString filePath(const QString& name) const { return m_directory.filePath(name); }

    /// Takes all free room but so many kilobytes with a file of its own.
    void fillUpTo(int freeKilobytes);

    /// Makes the whole disk read-only; false when the system refuses.
    [[nodiscard]] bool makeReadOnly();

private:
    QTemporaryDir m_directory;
    QString m_reason;
    bool m_isMounted = false;
};
