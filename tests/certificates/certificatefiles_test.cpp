#include "certificates/certificatefiles.h"
#include "tests/certificates/testcertificate.h"
#include "tests/support/configsample.h"
#include "tests/support/unusualfiles.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

class CertificateFilesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_dir = std::make_unique<QTemporaryDir>(); }

    void files_are_chosen_by_their_extensions_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("isCertificate");
        QTest::addColumn<bool>("isTlsCertificate");
        QTest::addColumn<bool>("isRevocationList");
        QTest::newRow("cer") << u"a.cer"_s << true << true << true;
        QTest::newRow("der") << u"a.der"_s << true << true << true;
        QTest::newRow("crt") << u"a.crt"_s << true << true << true;
        QTest::newRow("crl") << u"a.crl"_s << false << true << true;
        QTest::newRow("pem") << u"a.pem"_s << false << true << false;
        QTest::newRow("upper case") << u"A.DER"_s << true << true << true;
        QTest::newRow("no extension") << u"der"_s << false << false << false;
        QTest::newRow("blanks and umlauts") << u"ä b ü.der"_s << true << true << true;
        QTest::newRow("outside the basic plane") << u"\U0001F511.der"_s << true << true << true;
        QTest::newRow("255 bytes")
            << QString(QString(251, u'x') + u".der"_s) << true << true << true;
    }

    void files_are_chosen_by_their_extensions()
    {
        QFETCH(const QString, name);
        QFETCH(const bool, isCertificate);
        QFETCH(const bool, isTlsCertificate);
        QFETCH(const bool, isRevocationList);
        const QString path = writeFile(m_dir->filePath(name), TestCertificate().der());
        const QString directory = m_dir->path() + u'/';
        const auto listed = [&path](bool isListed) {
            return isListed ? QStringList{path} : QStringList();
        };
        QCOMPARE(certificateFiles(directory, false), listed(isCertificate));
        QCOMPARE(certificateFiles(directory, true), listed(isTlsCertificate));
        QCOMPARE(revocationListFiles(directory), listed(isRevocationList));
        QVERIFY(!loadCertificate(path).isNull());
    }

    void paths_are_absolute_whatever_the_directory_ends_in()
    {
        writeFile(m_dir->filePath(u"a.der"_s), "");
        const QStringList expected = {m_dir->path() + u"/a.der"_s};
        QCOMPARE(certificateFiles(m_dir->path(), false), expected);
        QCOMPARE(certificateFiles(m_dir->path() + u"/"_s, false), expected);
        QCOMPARE(certificateFiles(m_dir->path() + u"/../"_s + QDir(m_dir->path()).dirName(), false),
                 expected);
        QCOMPARE(absoluteFile(m_dir->path() + u"/x/../a.der"_s), expected.first());
        const QString relative = QDir().relativeFilePath(m_dir->path());
        QCOMPARE(certificateFiles(relative, false), expected);
    }

    void only_regular_files_are_listed()
    {
        QVERIFY(QDir(m_dir->path()).mkdir(u"directory.der"_s));
        makePipe(m_dir->filePath(u"pipe.der"_s));
        QVERIFY(QFile::link(u"/nonexistent"_s, m_dir->filePath(u"dangling.der"_s)));
        const QString file = writeFile(m_dir->filePath(u"a.txt"_s), TestCertificate().der());
        QVERIFY(QFile::link(file, m_dir->filePath(u"link.der"_s)));
        QCOMPARE(certificateFiles(m_dir->path(), false),
                 QStringList{m_dir->filePath(u"link.der"_s)});
        QVERIFY(!loadCertificate(m_dir->filePath(u"link.der"_s)).isNull());
    }

    void missing_directory_lists_nothing()
    {
        // An empty path isn't the working directory.
        for (const QString& directory : {QString(), u"/nonexistent/"_s}) {
            QVERIFY(!directoryExists(directory));
            QCOMPARE(certificateFiles(directory, true), QStringList());
            QCOMPARE(revocationListFiles(directory), QStringList());
        }
        QVERIFY(directoryExists(m_dir->path()));
    }

    void content_decides_what_a_file_is_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<bool>("isCertificate");
        QTest::addColumn<bool>("isRevocationList");
        QTest::newRow("certificate in DER") << TestCertificate().der() << true << false;
        QTest::newRow("certificate in PEM") << TestCertificate().pem() << true << false;
        QTest::newRow("list in DER") << TestRevocationList().der() << false << true;
        QTest::newRow("list in PEM") << TestRevocationList().pem() << false << true;
        QTest::newRow("empty") << QByteArray() << false << false;
        QTest::newRow("text") << QByteArray("no certificate\n") << false << false;
        QTest::newRow("cut") << TestCertificate().der().chopped(1) << false << false;
    }

    void content_decides_what_a_file_is()
    {
        QFETCH(const QByteArray, content);
        QFETCH(const bool, isCertificate);
        QFETCH(const bool, isRevocationList);
        const QString path = writeFile(m_dir->filePath(u"a.der"_s), content);
        QCOMPARE(!loadCertificate(path).isNull(), isCertificate);
        QCOMPARE(!loadRevocationList(path).isNull(), isRevocationList);
    }

    void file_that_vanished_is_null()
    {
        QVERIFY(loadCertificate(m_dir->filePath(u"a.der"_s)).isNull());
        QVERIFY(loadRevocationList(m_dir->filePath(u"a.der"_s)).isNull());
    }

private:
    std::unique_ptr<QTemporaryDir> m_dir;
};

QTEST_GUILESS_MAIN(CertificateFilesTest)

#include "certificatefiles_test.moc"
