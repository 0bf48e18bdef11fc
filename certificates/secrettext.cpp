#include "certificates/secrettext.h"

#include "base/uabytearray.h"

#include <utility>

namespace {

/// Writes that a compiler may not leave out, although nobody reads what they write.
void overwrite(const void* memory, qsizetype size)
{
    auto* bytes = static_cast<volatile char*>(const_cast<void*>(memory));
    for (qsizetype i = 0; i < size; ++i) {
        bytes[i] = 0;
    }
}

} // namespace

QString unsharedCopy(const QString& text)
{
    return QString(text.constData(), text.size());
}

void wipe(QString& text)
{
    // data() would copy a shared text and overwrite the copy. An empty text may be a constant.
    overwrite(text.constData(), text.size() * qsizetype(sizeof(QChar)));
    text.clear();
}

void wipe(QByteArray& bytes)
{
    overwrite(bytes.constData(), bytes.size());
    bytes.clear();
}

void wipe(UaByteArray& bytes)
{
    overwrite(std::as_const(bytes).data(), bytes.size());
    bytes = UaByteArray();
}
