#include "tests/support/smalldisk.h"

#include <QByteArray>
#include <QFile>

#include <cerrno>
#include <cstring>

#include <sys/mount.h>
#include <sys/statvfs.h>

using namespace Qt::StringLiterals;

SmallDisk::SmallDisk(int kilobytes)
{
    const QByteArray options = "size=" + QByteArray::number(kilobytes) + "k,mode=755";
    const QByteArray path = QFile::encodeName(m_directory.path());
    m_isMounted = mount("tmpfs", path.constData(), "tmpfs", 0, options.constData()) == 0;
    if (!m_isMounted) {
        m_reason = u"can't mount a small disk: "_s + QString::fromLocal8Bit(std::strerror(errno));
    }
}

SmallDisk::~SmallDisk()
{
    if (m_isMounted) {
        umount2(QFile::encodeName(m_directory.path()).constData(), MNT_DETACH);
    }
}

void SmallDisk::fillUpTo(int freeKilobytes)
{
    struct statvfs state = {};
    if (statvfs(QFile::encodeName(m_directory.path()).constData(), &state) != 0) {
        qFatal("can't ask the small disk for its room");
    }
    const qint64 room = static_cast<qint64>(state.f_bavail) * static_cast<qint64>(state.f_bsize);
    const qint64 size = room - 1024LL * freeKilobytes;
    QFile filler(filePath(u"filler"_s));
    if (!filler.open(QIODevice::WriteOnly) ||
        filler.write(QByteArray(static_cast<qsizetype>(size), 'x')) != size || !filler.flush()) {
        qFatal("can't fill the small disk");
    }
}

bool SmallDisk::makeReadOnly()
{
    return mount(nullptr, QFile::encodeName(m_directory.path()).constData(), nullptr,
                 MS_REMOUNT | MS_RDONLY, nullptr) == 0;
}
