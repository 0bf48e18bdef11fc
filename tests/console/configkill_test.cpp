#include "console/configdom.h"
#include "console/configelements.h"
#include "console/configfile.h"
#include "tests/support/configsample.h"

#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>

using namespace Qt::StringLiterals;

// Kills a process that saves without end. The file is then one of the two contents or, for the short
// time between the truncation and the end of the one write, a beginning of one.

class ConfigKillTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void killed_save_leaves_the_old_file_the_new_one_or_a_beginning()
    {
        const QTemporaryDir dir;
        const QString path = dir.filePath(u"ServerConfig.xml"_s);
        writeFile(path, serverConfig("<ServerName>even</ServerName>" +
                                     QByteArray("<UaEndpoint><Url>opc.tcp://host:4840</Url>"
                                                "</UaEndpoint>")
                                         .repeated(2000)));
        ConfigFile file(path);
        QCOMPARE(file.read(), ConfigFile::ReadResult::Parsed);
        QVERIFY(file.write());
        const QByteArray even = readFile(path);
        const QByteArray odd = QByteArray(even).replace(">even<", ">odd<");
        QVERIFY(odd != even);

        QRandomGenerator random(20);
        int whole = 0;
        for (int run = 0; run < 200; ++run) {
            writeFile(path, even);
            QProcess saver;
            saver.start(QStringLiteral(CONFIG_SAVER), {path});
            QVERIFY(saver.waitForReadyRead());
            QThread::usleep(random.bounded(20000u));
            saver.kill();
            QVERIFY(saver.waitForFinished());
            QCOMPARE(saver.exitStatus(), QProcess::CrashExit); // killed, not ended by an error

            const QByteArray bytes = readFile(path);
            const bool isWhole = bytes == even || bytes == odd;
            whole += isWhole ? 1 : 0;
            QVERIFY2(isWhole || even.startsWith(bytes) || odd.startsWith(bytes),
                     bytes.left(200).constData());
        }
        qInfo("%d of 200 files were whole", whole);
        QVERIFY(whole > 100);
    }
};

QTEST_GUILESS_MAIN(ConfigKillTest)

#include "configkill_test.moc"
