// What the program writes, what it refuses and how it ends.

#include "tests/examples/programrun.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

namespace {

const QString configName = QStringLiteral("ServerConfig.xml");
const QString keyFolder = QStringLiteral("pki/own/private");
const QStringList folders = {
    QStringLiteral("pki/own/certs"),     keyFolder,
    QStringLiteral("pki/trusted/certs"), QStringLiteral("pki/trusted/crl"),
    QStringLiteral("pki/issuers/certs"), QStringLiteral("pki/issuers/crl"),
    QStringLiteral("pki/rejected"),
};
constexpr QFile::Permissions others = QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup |
                                      QFile::ReadOther | QFile::WriteOther | QFile::ExeOther;
constexpr QFile::Permissions owner = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner;

bool writeFile(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

QStringList entriesOf(const QString& folder)
{
    return QDir(folder).entryList(
        QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
}

} // namespace

class SampleServerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void bad_command_line_ends_with_2_and_shows_the_usage_data();
    void bad_command_line_ends_with_2_and_shows_the_usage();
    void help_ends_with_0();
    void writes_the_configuration_and_the_folders();
    void makes_the_directory_and_its_parents();
    void key_folder_is_open_to_its_owner_alone();
    void key_folder_that_was_open_is_closed();
    void refuses_an_existing_configuration_and_changes_nothing();
    void refuses_a_link_that_leads_nowhere();
    void force_replaces_the_configuration_and_keeps_certificates();
    void force_is_no_error_in_an_empty_directory();
    void unwritable_target_ends_with_1_and_names_the_path_data();
    void unwritable_target_ends_with_1_and_names_the_path();
    void read_only_directory_ends_with_1();
    void full_disk_keeps_the_old_configuration_and_leaves_no_remains();

private:
    [[nodiscard]] QString path(const QString& name) const { return m_folder->filePath(name); }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void SampleServerTest::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
}

void SampleServerTest::bad_command_line_ends_with_2_and_shows_the_usage_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("nothing") << QStringList();
    QTest::newRow("only the switch") << QStringList{QStringLiteral("--force")};
    QTest::newRow("empty name") << QStringList{QString()};
    QTest::newRow("two directories") << QStringList{QStringLiteral("a"), QStringLiteral("b")};
    QTest::newRow("unknown switch") << QStringList{QStringLiteral("--no"), QStringLiteral("a")};
    QTest::newRow("value for the switch")
        << QStringList{QStringLiteral("--force=yes"), QStringLiteral("a")};
}

void SampleServerTest::bad_command_line_ends_with_2_and_shows_the_usage()
{
    QFETCH(QStringList, arguments);
    const QString before = QDir::currentPath();
    QVERIFY(QDir::setCurrent(m_folder->path()));
    const ProgramRun run = runSampleServer(arguments);
    QVERIFY(QDir::setCurrent(before));
    QCOMPARE(run.exitCode, 2);
    QVERIFY2(run.errors.startsWith(QStringLiteral("sampleserver: ")), qPrintable(run.errors));
    QVERIFY2(run.errors.contains(QStringLiteral("--force")), qPrintable(run.errors));
    QCOMPARE(run.output, QString());
    QCOMPARE(entriesOf(m_folder->path()), QStringList());
}

void SampleServerTest::help_ends_with_0()
{
    const ProgramRun run = runSampleServer({QStringLiteral("--help")});
    QCOMPARE(run.exitCode, 0);
    QVERIFY(run.output.contains(QStringLiteral("--force")));
    QCOMPARE(run.errors, QString());
}

void SampleServerTest::writes_the_configuration_and_the_folders()
{
    const ProgramRun run = runSampleServer({m_folder->path()});
    QVERIFY2(run.exitCode == 0, qPrintable(run.errors));
    QCOMPARE(run.errors, QString());
    QCOMPARE(run.output.trimmed(), QDir::toNativeSeparators(path(configName)));
    QCOMPARE(entriesOf(m_folder->path()), (QStringList{configName, QStringLiteral("pki")}));
    for (const QString& folder : folders) {
        QVERIFY2(QFileInfo(path(folder)).isDir(), qPrintable(folder));
    }
    const QByteArray expected =
        bytesOf(QStringLiteral(SAMPLESERVER_SOURCE) + QLatin1Char('/') + configName);
    QVERIFY(!expected.isEmpty());
    QCOMPARE(bytesOf(path(configName)), expected);
}

void SampleServerTest::makes_the_directory_and_its_parents()
{
    const QString directory = path(QStringLiteral("plant \u00e4\u03b1/line 2"));
    const ProgramRun run = runSampleServer({directory});
    QVERIFY2(run.exitCode == 0, qPrintable(run.errors));
    QVERIFY(QFileInfo(directory + QLatin1Char('/') + configName).isFile());
}

void SampleServerTest::key_folder_is_open_to_its_owner_alone()
{
    QCOMPARE(runSampleServer({m_folder->path()}).exitCode, 0);
    const QFile::Permissions permissions = QFile::permissions(path(keyFolder));
    QCOMPARE(permissions & others, QFile::Permissions());
    QCOMPARE(permissions & owner, owner);
}

void SampleServerTest::key_folder_that_was_open_is_closed()
{
    QVERIFY(QDir().mkpath(path(keyFolder)));
    QVERIFY(QFile::setPermissions(path(keyFolder), owner | QFile::ReadOther | QFile::ExeOther));
    QVERIFY(writeFile(path(keyFolder) + QStringLiteral("/old.pem"), "key"));
    QCOMPARE(runSampleServer({m_folder->path()}).exitCode, 0);
    QCOMPARE(QFile::permissions(path(keyFolder)) & others, QFile::Permissions());
    QCOMPARE(bytesOf(path(keyFolder) + QStringLiteral("/old.pem")), QByteArray("key"));
}

void SampleServerTest::refuses_an_existing_configuration_and_changes_nothing()
{
    QVERIFY(writeFile(path(configName), "<mine/>"));
    const ProgramRun run = runSampleServer({m_folder->path()});
    QCOMPARE(run.exitCode, 1);
    QCOMPARE(run.output, QString());
    QVERIFY2(run.errors.contains(QDir::toNativeSeparators(path(configName))),
             qPrintable(run.errors));
    QVERIFY2(run.errors.contains(QStringLiteral("--force")), qPrintable(run.errors));
    QCOMPARE(bytesOf(path(configName)), QByteArray("<mine/>"));
    QCOMPARE(entriesOf(m_folder->path()), QStringList{configName});
}

void SampleServerTest::refuses_a_link_that_leads_nowhere()
{
    QVERIFY(QFile::link(path(QStringLiteral("elsewhere.xml")), path(configName)));
    QCOMPARE(runSampleServer({m_folder->path()}).exitCode, 1);
    QVERIFY(!QFile::exists(path(QStringLiteral("elsewhere.xml"))));
}

void SampleServerTest::force_replaces_the_configuration_and_keeps_certificates()
{
    QCOMPARE(runSampleServer({m_folder->path()}).exitCode, 0);
    const QByteArray sample = bytesOf(path(configName));
    const QString certificate = path(QStringLiteral("pki/trusted/certs/client.der"));
    QVERIFY(writeFile(path(configName), QByteArray(100000, 'x')));
    QVERIFY(writeFile(certificate, "certificate"));
    const ProgramRun run = runSampleServer({QStringLiteral("--force"), m_folder->path()});
    QVERIFY2(run.exitCode == 0, qPrintable(run.errors));
    QCOMPARE(bytesOf(path(configName)), sample);
    QCOMPARE(bytesOf(certificate), QByteArray("certificate"));
}

void SampleServerTest::force_is_no_error_in_an_empty_directory()
{
    const ProgramRun run = runSampleServer({m_folder->path(), QStringLiteral("--force")});
    QVERIFY2(run.exitCode == 0, qPrintable(run.errors));
    QVERIFY(QFile::exists(path(configName)));
}

void SampleServerTest::unwritable_target_ends_with_1_and_names_the_path_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("folder");
    QTest::addColumn<QString>("target");
    QTest::addColumn<QString>("named");
    QTest::newRow("target is a file") << "server" << QString() << "server"
                                      << "server";
    QTest::newRow("target below a file") << "file" << QString() << "file/server"
                                         << "file/server";
    QTest::newRow("pki is a file") << "pki" << QString() << QString() << "pki/own/certs";
    QTest::newRow("key folder is a file") << "pki/own/private"
                                          << "pki/own" << QString() << "pki/own/private";
    QTest::newRow("rejected is a file") << "pki/rejected"
                                        << "pki" << QString() << "pki/rejected";
    QTest::newRow("configuration is a folder")
        << QString() << "ServerConfig.xml" << QString() << "ServerConfig.xml";
}

void SampleServerTest::unwritable_target_ends_with_1_and_names_the_path()
{
    QFETCH(QString, file);
    QFETCH(QString, folder);
    QFETCH(QString, target);
    QFETCH(QString, named);
    QVERIFY(folder.isEmpty() || QDir().mkpath(path(folder)));
    QVERIFY(file.isEmpty() || writeFile(path(file), "in the way"));
    const ProgramRun run = runSampleServer({QStringLiteral("--force"), path(target)});
    QCOMPARE(run.exitCode, 1);
    QCOMPARE(run.output, QString());
    QVERIFY2(run.errors.contains(QDir::toNativeSeparators(path(named))), qPrintable(run.errors));
    QVERIFY(!QFileInfo(path(configName)).isFile());
    if (!file.isEmpty()) {
        QCOMPARE(bytesOf(path(file)), QByteArray("in the way"));
    }
}

void SampleServerTest::read_only_directory_ends_with_1()
{
    QVERIFY(QFile::setPermissions(m_folder->path(), QFile::ReadOwner | QFile::ExeOwner |
                                                        QFile::ReadOther | QFile::ExeOther));
    QStringList command = {QStringLiteral(SAMPLESERVER_PROGRAM), m_folder->path()};
    if (writeFile(path(QStringLiteral("probe")), "x")) {
        // Whoever runs the test may write everywhere: hand the run to a user who may not.
        QVERIFY(QFile::remove(path(QStringLiteral("probe"))));
        command = QStringList{QStringLiteral("setpriv"), QStringLiteral("--reuid=65534"),
                              QStringLiteral("--regid=65534"), QStringLiteral("--clear-groups")} +
                  command;
        if (QStandardPaths::findExecutable(command.first()).isEmpty()) {
            QSKIP("setpriv is not installed");
        }
    }
    const ProgramRun run = runProgram(command.takeFirst(), command);
    QVERIFY(QFile::setPermissions(m_folder->path(), owner));
    QCOMPARE(run.exitCode, 1);
    QVERIFY2(run.errors.contains(QStringLiteral("can't be made")), qPrintable(run.errors));
    QCOMPARE(entriesOf(m_folder->path()), QStringList());
}

void SampleServerTest::full_disk_keeps_the_old_configuration_and_leaves_no_remains()
{
    const QString shell = QStandardPaths::findExecutable(QStringLiteral("sh"));
    if (shell.isEmpty()) {
        QSKIP("there is no shell to limit the size of files with");
    }
    QVERIFY(writeFile(path(configName), "<mine/>"));
    // A limit of a few blocks, which the certificates keep; with its signal ignored the write fails as
    // on a full disk.
    const QString script = QStringLiteral("trap '' XFSZ; ulimit -f 6; exec \"$0\" --force \"$1\"");
    const ProgramRun run =
        runProgram(shell, {QStringLiteral("-c"), script, QStringLiteral(SAMPLESERVER_PROGRAM),
                           m_folder->path()});
    QCOMPARE(run.exitCode, 1);
    QVERIFY2(run.errors.contains(QDir::toNativeSeparators(path(configName))),
             qPrintable(run.errors));
    QVERIFY2(!run.errors.contains(QStringLiteral("Unknown error")), qPrintable(run.errors));
    QCOMPARE(bytesOf(path(configName)), QByteArray("<mine/>"));
    QCOMPARE(entriesOf(m_folder->path()), (QStringList{configName, QStringLiteral("pki")}));
}

QTEST_GUILESS_MAIN(SampleServerTest)
#include "sampleserver_test.moc"
