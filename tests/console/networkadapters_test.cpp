#include "console/networkadapters.h"
#include "tests/support/testmain.h"

#include <QNetworkInterface>

using namespace Qt::StringLiterals;

class NetworkAdaptersTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void host_means_an_address_data()
    {
        QTest::addColumn<QString>("host");
        QTest::addColumn<QString>("address");
        QTest::addColumn<bool>("expected");
        const auto row = [](const char* name, const char* host, const char* address,
                            bool expected) {
            QTest::newRow(name) << QString(QLatin1StringView(host))
                                << QString(QLatin1StringView(address)) << expected;
        };
        row("IPv4", "10.0.0.1", "10.0.0.1", true);
        row("another IPv4", "10.0.0.2", "10.0.0.1", false);
        row("IPv4 in brackets", "[10.0.0.1]", "10.0.0.1", true);
        row("IPv6 in brackets", "[fe80::1]", "fe80::1", true);
        row("IPv6 without brackets", "fe80::1", "fe80::1", true);
        row("half a bracket", "[fe80::1", "fe80::1", false);
        row("the text counts, not the number", "[FE80::1]", "fe80::1", false);
        row("with its scope", "[fe80::1%eth0]", "fe80::1%eth0", true);
        row("without its scope", "[fe80::1]", "fe80::1%eth0", true);
        row("with another scope", "[fe80::1%eth1]", "fe80::1%eth0", false);
        row("with a scope that the address lacks", "[fe80::1%eth0]", "fe80::1", false);
        row("name", "host", "10.0.0.1", false);
        row("empty host", "", "10.0.0.1", false);
    }

    void host_means_an_address()
    {
        QFETCH(const QString, host);
        QFETCH(const QString, address);
        QFETCH(const bool, expected);
        QCOMPARE(isHostOfAddress(host, QHostAddress(address)), expected);
    }

    void adapters_are_those_of_the_system()
    {
        const QList<NetworkAdapter> adapters = networkAdapters();
        const QList<QNetworkInterface> interfaces = QNetworkInterface::allInterfaces();
        QCOMPARE(adapters.size(), interfaces.size());
        for (qsizetype i = 0; i < adapters.size(); ++i) {
            QCOMPARE(adapters[i].name, interfaces[i].humanReadableName());
            QCOMPARE(adapters[i].addresses.size(), interfaces[i].addressEntries().size());
        }
    }

    void loopback_adapter_is_known_as_such()
    {
        const QHostAddress loopback(QHostAddress::LocalHost);
        for (const NetworkAdapter& adapter : networkAdapters()) {
            if (adapter.addresses.contains(loopback)) {
                QVERIFY(adapter.isLoopback);
                return;
            }
        }
        QSKIP("this computer has no loopback adapter");
    }
};

ZANDREL_TEST_MAIN(NetworkAdaptersTest)

#include "networkadapters_test.moc"
