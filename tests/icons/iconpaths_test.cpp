// Every image path that stands in the code or in a form leads to an image.

#include "resources/images.h"
#include "valuewidgets/images/icons.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QImage>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>

namespace {

const QStringList codeFolders = {QStringLiteral("console"), QStringLiteral("certificates"),
                                 QStringLiteral("valuewidgets")};
const QStringList codeFiles = {QStringLiteral("*.cpp"), QStringLiteral("*.h"),
                               QStringLiteral("*.ui")};

/// The image paths in a text, such as ":/images/add.png", each once. A path may hold "%1".
QStringList imagePathsIn(const QString& text)
{
    static const QRegularExpression pattern(QStringLiteral(R"(:/[\w@%./-]+\.png)"));
    QStringList paths;
    for (auto matches = pattern.globalMatch(text); matches.hasNext();) {
        paths.append(matches.next().captured());
    }
    paths.removeDuplicates();
    return paths;
}

/// The code files below a folder; none when it doesn't exist.
QStringList codeFilesBelow(const QString& folder)
{
    QStringList files;
    for (QDirIterator it(folder, codeFiles, QDir::Files, QDirIterator::Subdirectories);
         it.hasNext();) {
        files.append(it.next());
    }
    files.sort();
    return files;
}

/// The images that a path can mean: itself, or all that fit when it holds "%1".
QStringList imagesFor(const QString& path)
{
    if (!path.contains(QStringLiteral("%1"))) {
        return {path};
    }
    const QFileInfo info(path);
    QStringList images;
    const QStringList filter = {info.fileName().replace(QStringLiteral("%1"), QStringLiteral("*"))};
    const QStringList names = QDir(info.path()).entryList(filter, QDir::Files);
    for (const QString& name : names) {
        images.append(info.path() + QLatin1Char('/') + name);
    }
    return images;
}

bool leadsToImages(const QString& path)
{
    const QStringList images = imagesFor(path);
    return !images.isEmpty() && std::all_of(images.begin(), images.end(), [](const QString& image) {
        return !QImage(image).isNull();
    });
}

QString textOf(const QString& file)
{
    QFile source(file);
    return source.open(QIODevice::ReadOnly) ? QString::fromUtf8(source.readAll()) : QString();
}

} // namespace

class IconPathsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void search_finds_paths_in_code_and_forms_data();
    void search_finds_paths_in_code_and_forms();
    void search_goes_through_folders_and_bears_missing_ones();
    void path_with_a_gap_means_every_image_that_fits();
    void every_path_in_the_code_leads_to_an_image();
};

void IconPathsTest::initTestCase()
{
    registerVeskWidgetImages();
    registerConsoleImages();
}

void IconPathsTest::search_finds_paths_in_code_and_forms_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("paths");
    QTest::newRow("nothing") << QString() << QStringList();
    QTest::newRow("no resource") << QStringLiteral("QIcon(\"add.png\")") << QStringList();
    QTest::newRow("literal") << QStringLiteral("QIcon(QStringLiteral(\":/a/b_c.png\"))")
                             << QStringList{QStringLiteral(":/a/b_c.png")};
    QTest::newRow("gap") << QStringLiteral("\":/a/encr_%1.png\"")
                         << QStringList{QStringLiteral(":/a/encr_%1.png")};
    QTest::newRow("form")
        << QStringLiteral(
               "<iconset><normaloff>:/a/b.png</normaloff>:/a/b.png</iconset><x>:/c.png</x>")
        << QStringList{QStringLiteral(":/a/b.png"), QStringLiteral(":/c.png")};
}

void IconPathsTest::search_finds_paths_in_code_and_forms()
{
    QFETCH(QString, text);
    QFETCH(QStringList, paths);
    QCOMPARE(imagePathsIn(text), paths);
}

void IconPathsTest::search_goes_through_folders_and_bears_missing_ones()
{
    const QTemporaryDir folder;
    QVERIFY(QDir(folder.path()).mkpath(QStringLiteral("deep/er")));
    for (const QString& name : {QStringLiteral("a.cpp"), QStringLiteral("deep/b.ui"),
                                QStringLiteral("deep/er/c.h"), QStringLiteral("d.txt")}) {
        QFile file(folder.filePath(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QVERIFY(file.write("\":/x.png\"") > 0);
    }
    const QStringList files = codeFilesBelow(folder.path());
    QCOMPARE(files, (QStringList{folder.filePath(QStringLiteral("a.cpp")),
                                 folder.filePath(QStringLiteral("deep/b.ui")),
                                 folder.filePath(QStringLiteral("deep/er/c.h"))}));
    QCOMPARE(textOf(files.first()), QStringLiteral("\":/x.png\""));
    QVERIFY(codeFilesBelow(folder.filePath(QStringLiteral("missing"))).isEmpty());
}

void IconPathsTest::path_with_a_gap_means_every_image_that_fits()
{
    const QStringList images = imagesFor(QStringLiteral(":/veskwidgets/images/encr_%1.png"));
    for (const QString& policy : {QStringLiteral("none"), QStringLiteral("basic128rsa15"),
                                  QStringLiteral("basic256"), QStringLiteral("basic256sha256")}) {
        const QString path = QStringLiteral(":/veskwidgets/images/encr_%1.png").arg(policy);
        QVERIFY2(images.contains(path), qPrintable(path));
    }
    QVERIFY(leadsToImages(QStringLiteral(":/veskwidgets/images/encr_%1.png")));
    QVERIFY(!leadsToImages(QStringLiteral(":/veskwidgets/images/nothing_%1.png")));
    QVERIFY(!leadsToImages(QStringLiteral(":/veskwidgets/images/nothing.png")));
}

void IconPathsTest::every_path_in_the_code_leads_to_an_image()
{
    const QDir root(QStringLiteral(SOURCE_FOLDER));
    QStringList broken;
    for (const QString& folder : codeFolders) {
        const QStringList files = codeFilesBelow(root.filePath(folder));
        for (const QString& file : files) {
            const QStringList paths = imagePathsIn(textOf(file));
            for (const QString& path : paths) {
                if (!leadsToImages(path)) {
                    broken.append(root.relativeFilePath(file) + QStringLiteral(": ") + path);
                }
            }
        }
    }
    QCOMPARE(broken.join(QLatin1Char('\n')), QString());
}

QTEST_GUILESS_MAIN(IconPathsTest)
#include "iconpaths_test.moc"
