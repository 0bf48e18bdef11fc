// What the tab "Certificates" does with a directory of certificates, each beside the bare calls on the
// same files or dates.

#include "base/uaarrays.h"
#include "certificates/certificatefiles.h"
#include "certificates/veskcertificatemanager.h"
#include "certificates/veskcertificatemodel.h"
#include "certificates/vesklistsortmodel.h"
#include "pki/uapkirsakeypair.h"
#include "resources/images.h"
#include "valuewidgets/images/icons.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTreeView>
#include <benchmark/benchmark.h>
#include <openssl/err.h>
#include <openssl/x509v3.h>

#include <algorithm>
#include <map>
#include <memory>

#include <dirent.h>
#include <malloc.h>

namespace {

/// A certificate like those of applications, with a lifetime of its own.
QByteArray makeCertificate(const UaPkiRSAKeyPair& keyPair, int number)
{
    const QByteArray text = QByteArray::number(number);
    UaPkiIdentity subject;
    subject.commonName = UaString(("Application " + text).constData());
    subject.organization = "Organization";
    subject.organizationUnit = "Unit";
    subject.locality = "Locality";
    subject.state = "State";
    subject.country = "DE";
    UaPkiCertificateInfo info;
    info.uri = UaString(("urn:host" + text + ":product:application").constData());
    info.validTime = 86400u * (100u + static_cast<OpcUa_UInt32>(number) * 7919u % 5000u);
    info.serialNumber = number + 1;
    if (info.dnsNames.create(1) != OpcUa_Good || info.ipAddresses.create(1) != OpcUa_Good ||
        UaString(("host" + text + ".example").constData()).copyTo(&info.dnsNames[0]) !=
            OpcUa_Good ||
        UaString("192.168.0.10").copyTo(&info.ipAddresses[0]) != OpcUa_Good) {
        qFatal("no memory");
    }
    const UaPkiCertificate certificate(info, subject, keyPair, false,
                                       UaPkiCertificate::Sha256WithRsa);
    const UaByteArray der = certificate.toDER();
    return {reinterpret_cast<const char*>(der.data()), der.size()};
}

/// A certificate whose subjectAltName extension is as large as a file may be.
QByteArray makeCertificateOfManyNames(int count)
{
    const std::unique_ptr<EVP_PKEY, decltype(&EVP_PKEY_free)> key(EVP_RSA_gen(1024), EVP_PKEY_free);
    const std::unique_ptr<X509, decltype(&X509_free)> certificate(X509_new(), X509_free);
    GENERAL_NAMES* names = sk_GENERAL_NAME_new_reserve(nullptr, count);
    for (int i = 0; i < count; ++i) {
        const QByteArray text = "h" + QByteArray::number(i);
        GENERAL_NAME* name = GENERAL_NAME_new();
        ASN1_IA5STRING* string = ASN1_IA5STRING_new();
        ASN1_STRING_set(string, text.constData(), static_cast<int>(text.size()));
        GENERAL_NAME_set0_value(name, GEN_DNS, string);
        sk_GENERAL_NAME_push(names, name);
    }
    X509_add1_ext_i2d(certificate.get(), NID_subject_alt_name, names, 0, 0);
    GENERAL_NAMES_free(names);
    X509_set_version(certificate.get(), X509_VERSION_3);
    X509_gmtime_adj(X509_getm_notBefore(certificate.get()), 0);
    X509_gmtime_adj(X509_getm_notAfter(certificate.get()), 86400 * 365);
    X509_set_pubkey(certificate.get(), key.get());
    X509_sign(certificate.get(), key.get(), EVP_sha256());
    unsigned char* bytes = nullptr;
    const int size = i2d_X509(certificate.get(), &bytes);
    QByteArray der(reinterpret_cast<const char*>(bytes), size);
    OPENSSL_free(bytes);
    return der;
}

/// A directory with this many certificates.
class Certificates
{
public:
    explicit Certificates(int count)
    {
        const UaPkiRSAKeyPair keyPair(1024);
        for (int i = 0; i < count; ++i) {
            QFile file(m_directory.filePath(QStringLiteral("application%1.der").arg(i)));
            const QByteArray der = makeCertificate(keyPair, i);
            if (der.isEmpty() || !file.open(QIODevice::WriteOnly) ||
                file.write(der) != der.size()) {
                qFatal("can't write %s", qPrintable(file.fileName()));
            }
        }
    }

    /// Made once for each count.
    static const Certificates& ofCount(qint64 count)
    {
        static std::map<qint64, std::unique_ptr<Certificates>> made;
        std::unique_ptr<Certificates>& entry = made[count];
        if (!entry) {
            entry = std::make_unique<Certificates>(static_cast<int>(count));
        }
        return *entry;
    }

    [[nodiscard]] QString path() const { return m_directory.path() + u'/'; }

private:
    QTemporaryDir m_directory;
};

CertificateLocationInfo locations(const Certificates& certificates)
{
    CertificateLocationInfo info;
    info.trustListLocation = certificates.path();
    info.revocationListLocation = QStringLiteral("/nonexistent/");
    info.rejectedCertificatesDirectory = QStringLiteral("/nonexistent/");
    info.serverCertificate = certificates.path() + QStringLiteral("application0.der");
    return info;
}

// The floor: what a program has to do that shows the same ten texts with OpenSSL alone.

std::string nameField(X509_NAME* name, int nid)
{
    const int position = X509_NAME_get_index_by_NID(name, nid, -1);
    if (position < 0) {
        return {};
    }
    unsigned char* text = nullptr;
    const int length =
        ASN1_STRING_to_UTF8(&text, X509_NAME_ENTRY_get_data(X509_NAME_get_entry(name, position)));
    std::string result(reinterpret_cast<const char*>(text), static_cast<std::size_t>(length));
    OPENSSL_free(text);
    return result;
}

qint64 seconds(const ASN1_TIME* time)
{
    std::tm fields{};
    ASN1_TIME_to_tm(time, &fields);
    return timegm(&fields);
}

struct Fields
{
    std::string name, organization, organizationUnit, locality, state, country, uri, dns, ip;
    qint64 from = 0;
    qint64 to = 0;
};

void readNames(X509* certificate, Fields& fields)
{
    auto* names = static_cast<GENERAL_NAMES*>(
        X509_get_ext_d2i(certificate, NID_subject_alt_name, nullptr, nullptr));
    for (int i = 0; i < sk_GENERAL_NAME_num(names); ++i) {
        const GENERAL_NAME* name = sk_GENERAL_NAME_value(names, i);
        std::string& field = name->type == GEN_URI   ? fields.uri
                             : name->type == GEN_DNS ? fields.dns
                                                     : fields.ip;
        field.assign(reinterpret_cast<const char*>(ASN1_STRING_get0_data(name->d.ia5)),
                     static_cast<std::size_t>(ASN1_STRING_length(name->d.ia5)));
    }
    GENERAL_NAMES_free(names);
}

Fields readFields(X509* certificate)
{
    Fields fields;
    fields.name = nameField(X509_get_subject_name(certificate), NID_commonName);
    X509_NAME* issuer = X509_get_issuer_name(certificate);
    fields.organization = nameField(issuer, NID_organizationName);
    fields.organizationUnit = nameField(issuer, NID_organizationalUnitName);
    fields.locality = nameField(issuer, NID_localityName);
    fields.state = nameField(issuer, NID_stateOrProvinceName);
    fields.country = nameField(issuer, NID_countryName);
    fields.from = seconds(X509_get0_notBefore(certificate));
    fields.to = seconds(X509_get0_notAfter(certificate));
    readNames(certificate, fields);
    return fields;
}

std::vector<Fields> readByHand(const std::string& path)
{
    std::vector<Fields> all;
    DIR* directory = opendir(path.c_str());
    while (const dirent* entry = readdir(directory)) {
        std::FILE* file = std::fopen((path + entry->d_name).c_str(), "rb");
        unsigned char bytes[65536];
        const std::size_t size = file ? std::fread(bytes, 1, sizeof bytes, file) : 0;
        const unsigned char* position = bytes;
        if (X509* certificate = d2i_X509(nullptr, &position, static_cast<long>(size))) {
            all.push_back(readFields(certificate));
            X509_free(certificate);
        }
        if (file) {
            std::fclose(file);
        }
    }
    closedir(directory);
    ERR_clear_error();
    return all;
}

void ReloadByHand(benchmark::State& state)
{
    const std::string path = Certificates::ofCount(state.range(0)).path().toStdString();
    for (auto _ : state) {
        if (readByHand(path).size() != static_cast<std::size_t>(state.range(0))) {
            state.SkipWithError("certificates are missing");
        }
    }
    state.SetComplexityN(state.range(0));
}

/// F5 in the visible tab until the page is painted again.
void Reload(benchmark::State& state)
{
    VeskCertificateManager tab(QString(), QString(),
                               locations(Certificates::ofCount(state.range(0))), QIcon(), false);
    tab.resize(700, 500);
    tab.show();
    QApplication::processEvents();
    const auto* view = tab.findChild<QTreeView*>(QStringLiteral("treeView_trustedCerts"));
    for (auto _ : state) {
        QMetaObject::invokeMethod(&tab, "sltReload");
        tab.grab();
        if (view->model()->rowCount() != state.range(0)) {
            state.SkipWithError("certificates are missing");
        }
    }
    state.SetComplexityN(state.range(0));
}

/// The visible page once more, without a change.
void Repaint(benchmark::State& state)
{
    VeskCertificateManager tab(QString(), QString(),
                               locations(Certificates::ofCount(state.range(0))), QIcon(), false);
    tab.resize(700, 500);
    tab.grab();
    for (auto _ : state) {
        benchmark::DoNotOptimize(tab.grab());
    }
}

/// A page with one certificate of 100,000 alternative names, from the disk to the first picture.
void PaintManyNames(benchmark::State& state)
{
    const QTemporaryDir directory;
    CertificateLocationInfo info;
    info.trustListLocation = directory.path() + u'/';
    QFile file(directory.filePath(QStringLiteral("many.der")));
    const QByteArray der = makeCertificateOfManyNames(static_cast<int>(state.range(0)));
    if (!file.open(QIODevice::WriteOnly) || file.write(der) != der.size()) {
        qFatal("can't write %s", qPrintable(file.fileName()));
    }
    file.close();
    for (auto _ : state) {
        VeskCertificateManager tab(QString(), QString(), info, QIcon(), false);
        tab.resize(2000, 500);
        benchmark::DoNotOptimize(tab.grab());
        const auto* view = tab.findChild<QTreeView*>(QStringLiteral("treeView_trustedCerts"));
        const QModelIndex names = view->model()->index(0, VeskCertificateModel::DomainNameColumn);
        if (names.data().toString().size() < state.range(0)) {
            state.SkipWithError("names are missing");
        }
    }
}

using Entries = std::vector<VeskCertificateModel::Entry>;

Entries load(qint64 count)
{
    Entries entries;
    for (const QString& file : certificateFiles(Certificates::ofCount(count).path(), false)) {
        entries.push_back({loadCertificate(file), file, VeskCertificateModel::Trusted});
    }
    return entries;
}

void SortDatesByHand(benchmark::State& state)
{
    VeskCertificateModel model(QIcon(), VeskCertificateModel::TrustList);
    model.addCertificates(load(state.range(0)));
    std::vector<QDateTime> dates;
    for (int row = 0; row < model.rowCount(); ++row) {
        const QModelIndex index = model.index(row, VeskCertificateModel::ValidToColumn);
        dates.push_back(model.data(index, Qt::DisplayRole).toDateTime());
    }
    for (auto _ : state) {
        std::vector<QDateTime> sorted = dates;
        std::stable_sort(sorted.begin(), sorted.end());
        benchmark::DoNotOptimize(sorted.data());
    }
}

void SortByDate(benchmark::State& state)
{
    VeskCertificateModel model(QIcon(), VeskCertificateModel::TrustList);
    model.addCertificates(load(state.range(0)));
    VeskListSortModel proxy;
    proxy.setSourceModel(&model);
    for (auto _ : state) {
        proxy.sort(VeskCertificateModel::ValidToColumn);
        state.PauseTiming();
        const auto date = [&proxy](int row) {
            return proxy.index(row, VeskCertificateModel::ValidToColumn).data().toDateTime();
        };
        if (date(0) > date(proxy.rowCount() - 1)) {
            state.SkipWithError("not sorted");
        }
        proxy.sort(-1);
        state.ResumeTiming();
    }
}

/// What a row costs: as it is loaded, and with the texts of all its columns.
void MemoryPerRow(benchmark::State& state)
{
    for (auto _ : state) {
        const std::size_t before = mallinfo2().uordblks;
        VeskCertificateModel model(QIcon(), VeskCertificateModel::TrustList);
        model.addCertificates(load(state.range(0)));
        const std::size_t loaded = mallinfo2().uordblks;
        for (int row = 0; row < model.rowCount(); ++row) {
            benchmark::DoNotOptimize(model.data(model.index(row, 1), Qt::DisplayRole));
        }
        const std::size_t shown = mallinfo2().uordblks;
        const double rows = double(state.range(0));
        state.counters["bytes_loaded"] = double(loaded - before) / rows;
        state.counters["bytes_shown"] = double(shown - before) / rows;
    }
}

BENCHMARK(ReloadByHand)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(Reload)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(Repaint)->Arg(1000)->Unit(benchmark::kMillisecond);
BENCHMARK(PaintManyNames)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(SortDatesByHand)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(SortByDate)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(MemoryPerRow)->Arg(10000)->Iterations(1)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv)
{
    registerConsoleImages();
    registerVeskWidgetImages();
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
