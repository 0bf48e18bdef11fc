#include "base/uabytearray.h"
#include "certificates/secrettext.h"

#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;

class SecretTextTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    static void wiped_text_is_empty_and_overwritten_wherever_it_is_shared();
    static void wiped_bytes_are_empty_and_overwritten_wherever_they_are_shared();
    static void wiped_bytes_of_a_key_are_empty_and_overwritten();
    static void unshared_copy_outlives_the_wiping();
    static void nothing_can_be_wiped_and_copied();
};

void SecretTextTest::wiped_text_is_empty_and_overwritten_wherever_it_is_shared()
{
    QString text(u"secret \u00e4"_s.repeated(3));
    const QString shared = text;
    wipe(text);
    QVERIFY(text.isEmpty());
    QCOMPARE(shared.size(), 24);
    QVERIFY(std::all_of(shared.begin(), shared.end(), [](QChar c) { return c.isNull(); }));
}

void SecretTextTest::wiped_bytes_are_empty_and_overwritten_wherever_they_are_shared()
{
    QByteArray bytes = QByteArray("secret").repeated(3);
    const QByteArray shared = bytes;
    wipe(bytes);
    QVERIFY(bytes.isEmpty());
    QCOMPARE(shared, QByteArray(18, '\0'));
}

void SecretTextTest::wiped_bytes_of_a_key_are_empty_and_overwritten()
{
    UaByteArray bytes("secret", 6);
    const UaByteArray shared = bytes;
    wipe(bytes);
    QVERIFY(bytes.isEmpty());
    QVERIFY(shared == UaByteArray("\0\0\0\0\0\0", 6));
    wipe(bytes);
    QVERIFY(bytes.isEmpty());
}

void SecretTextTest::unshared_copy_outlives_the_wiping()
{
    QString text = QString(u"secret"_s).repeated(2);
    const QString copy = unsharedCopy(text);
    QVERIFY(copy.constData() != text.constData());
    wipe(text);
    QCOMPARE(copy, u"secretsecret"_s);
}

void SecretTextTest::nothing_can_be_wiped_and_copied()
{
    QString null;
    QString empty = u""_s;
    QByteArray noBytes;
    wipe(null);
    wipe(empty);
    wipe(noBytes);
    QVERIFY(null.isEmpty());
    QVERIFY(empty.isEmpty());
    QVERIFY(noBytes.isEmpty());
    QVERIFY(unsharedCopy(QString()).isEmpty());
}

QTEST_GUILESS_MAIN(SecretTextTest)
#include "secrettext_test.moc"
