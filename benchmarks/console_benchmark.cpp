// What the console does with its configuration file, each beside the bare Qt calls on the same file.

#include "console/configdom.h"
#include "console/configelements.h"
#include "console/veskserverconfigmodel.h"
#include "console/veskserverconfigwidget.h"
#include "console/vesktracesettingswidget.h"
#include "resources/images.h"
#include "valuewidgets/images/icons.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QDomDocument>
#include <QFile>
#include <QHashSeed>
#include <QProcess>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>

namespace {

const QByteArray settings = R"(
      <SecuritySetting>
        <SecurityPolicy>http://opcfoundation.org/UA/SecurityPolicy#None</SecurityPolicy>
        <MessageSecurityMode>None</MessageSecurityMode>
      </SecuritySetting>
      <SecuritySetting>
        <SecurityPolicy>http://opcfoundation.org/UA/SecurityPolicy#Basic256Sha256</SecurityPolicy>
        <MessageSecurityMode>Sign</MessageSecurityMode>
        <MessageSecurityMode>SignAndEncrypt</MessageSecurityMode>
      </SecuritySetting>
)";

QByteArray configuration(qint64 endpoints)
{
    QByteArray text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<Configuration><UaServerConfig>";
    for (qint64 i = 0; i < endpoints; ++i) {
        text += "<UaEndpoint><SerializerType>Binary</SerializerType><Url>opc.tcp://host" +
                QByteArray::number(i) + ":4840</Url><StackUrl>opc.tcp://127.0.0.1:4840</StackUrl>" +
                settings + "</UaEndpoint>\n";
    }
    return text +
           "<UserIdentityTokens><EnableAnonymous>true</EnableAnonymous><EnableUserPw>false"
           "</EnableUserPw></UserIdentityTokens><Trace><UaAppTraceFile>a.log</UaAppTraceFile>"
           "<UaAppTraceMaxEntries>5</UaAppTraceMaxEntries><UaAppTraceMaxBackup>5"
           "</UaAppTraceMaxBackup><UaAppTraceEnabled>true</UaAppTraceEnabled><UaAppTraceLevel>"
           "Info</UaAppTraceLevel><UaStackTraceEnabled>true</UaStackTraceEnabled>"
           "<UaStackTraceLevel>INFO</UaStackTraceLevel></Trace></UaServerConfig>"
           "</Configuration>\n";
}

/// A configuration file with this many endpoints, in the form in which the console writes it.
class Configuration
{
public:
    explicit Configuration(qint64 endpoints)
        : m_path(m_directory.filePath(QStringLiteral("ServerConfig.xml")))
    {
        QDomDocument document;
        document.setContent(QString::fromUtf8(configuration(endpoints)));
        write(document);
    }

    [[nodiscard]] const QString& path() const { return m_path; }

    [[nodiscard]] QDomDocument read() const
    {
        QFile file(m_path);
        QDomDocument document;
        if (file.open(QIODevice::ReadOnly | QIODevice::Text)) {
            document.setContent(QString::fromUtf8(file.readAll()));
        }
        return document;
    }

    void write(const QDomDocument& document) const
    {
        QFile file(m_path);
        if (file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Text)) {
            file.write(document.toString(2).toUtf8());
        }
    }

    [[nodiscard]] qint64 size() const { return QFile(m_path).size(); }

private:
    QTemporaryDir m_directory;
    QString m_path;
};

void finish(benchmark::State& state, const Configuration& configuration)
{
    state.SetBytesProcessed(state.iterations() * configuration.size());
}

QDomElement serverConfig(const QDomDocument& document)
{
    return document.documentElement().firstChildElement(ConfigElement::UaServerConfig);
}

/// Touches each text that the Endpoints tab shows.
qsizetype walkEndpoints(const QDomElement& config)
{
    qsizetype characters = 0;
    for (QDomElement endpoint = config.firstChildElement(ConfigElement::UaEndpoint);
         !endpoint.isNull(); endpoint = endpoint.nextSiblingElement(ConfigElement::UaEndpoint)) {
        characters += endpoint.firstChildElement(ConfigElement::Url).text().size();
        characters += endpoint.firstChildElement(ConfigElement::StackUrl).text().size();
        for (QDomElement setting = endpoint.firstChildElement(ConfigElement::SecuritySetting);
             !setting.isNull();
             setting = setting.nextSiblingElement(ConfigElement::SecuritySetting)) {
            characters += setting.firstChildElement(ConfigElement::SecurityPolicy).text().size();
            for (QDomElement mode = setting.firstChildElement(ConfigElement::MessageSecurityMode);
                 !mode.isNull();
                 mode = mode.nextSiblingElement(ConfigElement::MessageSecurityMode)) {
                characters += mode.text().size();
            }
        }
    }
    return characters;
}

/// Replaces the endpoints by as many copies of the first one with new settings.
void rebuildEndpoints(QDomElement config)
{
    QStringList urls;
    QDomElement endpoint = config.firstChildElement(ConfigElement::UaEndpoint);
    const QDomNode pattern = endpoint.cloneNode();
    while (!endpoint.isNull()) {
        const QDomElement next = endpoint.nextSiblingElement(ConfigElement::UaEndpoint);
        urls.append(endpoint.firstChildElement(ConfigElement::Url).text());
        config.removeChild(endpoint);
        endpoint = next;
    }
    const QString modes[2][2] = {{QStringLiteral("None")},
                                 {QStringLiteral("Sign"), QStringLiteral("SignAndEncrypt")}};
    for (const QString& url : urls) {
        QDomElement copy = pattern.cloneNode().toElement();
        setFirstChildText(copy.firstChildElement(ConfigElement::Url), url);
        for (int i = 0; i < 2; ++i) {
            copy.removeChild(copy.firstChildElement(ConfigElement::SecuritySetting));
        }
        for (const auto& setting : modes) {
            QDomElement element =
                copy.ownerDocument().createElement(ConfigElement::SecuritySetting);
            appendTextElement(element, ConfigElement::SecurityPolicy, url);
            for (const QString& mode : setting) {
                if (!mode.isEmpty()) {
                    appendTextElement(element, ConfigElement::MessageSecurityMode, mode);
                }
            }
            copy.appendChild(element);
        }
        config.appendChild(copy);
    }
}

void endpointsLoad(benchmark::State& state)
{
    const Configuration configuration(state.range(0));
    VeskServerConfigWidget tab(configuration.path(), 0, QString());
    tab.show();
    for (auto unused : state) {
        tab.reload();
    }
    if (tab.findChild<VeskServerConfigModel*>()->rowCount() != state.range(0)) {
        state.SkipWithError("the tab doesn't show the endpoints");
    }
    finish(state, configuration);
}

void endpointsLoadFloor(benchmark::State& state)
{
    const Configuration configuration(state.range(0));
    for (auto unused : state) {
        benchmark::DoNotOptimize(walkEndpoints(serverConfig(configuration.read())));
    }
    finish(state, configuration);
}

void endpointsSave(benchmark::State& state)
{
    const Configuration configuration(state.range(0));
    VeskServerConfigWidget tab(configuration.path(), 0, QString());
    tab.show();
    qint64 saves = 0;
    QObject::connect(&tab, &VeskServerConfigWidget::changesSaved, [&saves] { ++saves; });
    for (auto unused : state) {
        tab.save();
    }
    if (saves != state.iterations()) {
        state.SkipWithError("a save failed");
    }
    finish(state, configuration);
}

void endpointsSaveFloor(benchmark::State& state)
{
    const Configuration configuration(state.range(0));
    for (auto unused : state) {
        const QDomDocument document = configuration.read();
        rebuildEndpoints(serverConfig(document));
        configuration.write(document);
    }
    finish(state, configuration);
}

void traceLoad(benchmark::State& state)
{
    const Configuration configuration(state.range(0));
    VeskTraceSettingsWidget tab(configuration.path(), QString());
    for (auto unused : state) {
        tab.reload();
    }
    finish(state, configuration);
}

void traceLoadFloor(benchmark::State& state)
{
    const Configuration configuration(state.range(0));
    for (auto unused : state) {
        const QDomDocument document = configuration.read();
        benchmark::DoNotOptimize(
            descend(serverConfig(document), {ConfigElement::Trace}).text().size());
    }
    finish(state, configuration);
}

void traceSave(benchmark::State& state)
{
    const Configuration configuration(state.range(0));
    VeskTraceSettingsWidget tab(configuration.path(), QString());
    qint64 saves = 0;
    QObject::connect(&tab, &VeskTraceSettingsWidget::changesSaved, [&saves] { ++saves; });
    for (auto unused : state) {
        tab.save();
    }
    if (saves != state.iterations()) {
        state.SkipWithError("a save failed");
    }
    finish(state, configuration);
}

void traceSaveFloor(benchmark::State& state)
{
    const Configuration configuration(state.range(0));
    for (auto unused : state) {
        const QDomDocument document = configuration.read();
        setFirstChildText(descend(serverConfig(document),
                                  {ConfigElement::Trace, ConfigElement::UaAppTraceMaxEntries}),
                          QStringLiteral("7"));
        configuration.write(document);
    }
    finish(state, configuration);
}

/// Runs a program that shows its window and ends.
void runStartProbe(benchmark::State& state, const QStringList& arguments)
{
    for (auto unused : state) {
        if (QProcess::execute(QStringLiteral(START_PROBE), arguments) != 0) {
            state.SkipWithError("the program failed");
            return;
        }
    }
}

/// Without places of certificates the window has two tabs.
void consoleStart(benchmark::State& state)
{
    const Configuration configuration(3);
    runStartProbe(state, {QStringLiteral("console"), configuration.path()});
}

/// With all three tabs, on a server directory with certificates and revocation lists of each kind.
void consoleStartOnSampleServer(benchmark::State& state)
{
    const QTemporaryDir directory;
    const QString server = directory.filePath(QStringLiteral("server"));
    if (QProcess::execute(QStringLiteral(SAMPLE_SERVER), {server}) != 0) {
        state.SkipWithError("the sample server could not be laid out");
        return;
    }
    runStartProbe(state, {QStringLiteral("console"), server + QStringLiteral("/ServerConfig.xml")});
}

void consoleStartFloor(benchmark::State& state)
{
    runStartProbe(state, {QStringLiteral("bare")});
}

#define AT_SIZES(measurement)                                                                      \
    BENCHMARK(measurement)->Arg(2)->Arg(100)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond)
AT_SIZES(endpointsLoad);
AT_SIZES(endpointsLoadFloor);
AT_SIZES(endpointsSave);
AT_SIZES(endpointsSaveFloor);
AT_SIZES(traceLoad);
AT_SIZES(traceLoadFloor);
AT_SIZES(traceSave);
AT_SIZES(traceSaveFloor);
BENCHMARK(consoleStart)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(consoleStartOnSampleServer)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(consoleStartFloor)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace

int main(int argc, char** argv)
{
    registerConsoleImages();
    registerVeskWidgetImages();
    QHashSeed::setDeterministicGlobalSeed();
    qputenv("QT_QPA_PLATFORM", "offscreen");
    benchmark::Initialize(&argc, argv);
    const QApplication application(argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
