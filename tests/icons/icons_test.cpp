// The images that the resource files carry: complete, of the right size and made from the drawings.

#include "resources/images.h"
#include "tests/icons/iconlist.h"
#include "valuewidgets/images/icons.h"

#include <QDir>
#include <QIcon>
#include <QImage>
#include <QProcess>
#include <QSet>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <cstdlib>

namespace {

const QDir sourceFolder(QStringLiteral(SOURCE_FOLDER));
const QStringList resourceFolders = {QStringLiteral(":/veskwidgets/images"),
                                     QStringLiteral(":/images")};

QSet<QString> shippedPaths()
{
    QSet<QString> paths;
    for (const QString& folder : resourceFolders) {
        const QStringList names = QDir(folder).entryList(QDir::Files);
        for (const QString& name : names) {
            paths.insert(folder + QLatin1Char('/') + name);
        }
    }
    return paths;
}

int largestDifference(const QImage& a, const QImage& b)
{
    int largest = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const QRgb p = a.pixel(x, y);
            const QRgb q = b.pixel(x, y);
            largest =
                std::max({largest, std::abs(qAlpha(p) - qAlpha(q)), std::abs(qRed(p) - qRed(q)),
                          std::abs(qGreen(p) - qGreen(q)), std::abs(qBlue(p) - qBlue(q))});
        }
    }
    return largest;
}

} // namespace

class IconsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void registering_twice_keeps_images_and_adds_none();
    void resources_hold_the_listed_images_in_three_sizes_and_nothing_else();
    void every_png_file_of_the_folders_is_shipped();
    void image_loads_in_three_sizes_data() { addIconRows(); }
    void image_loads_in_three_sizes();
    void image_stands_free_on_a_transparent_ground_data() { addIconRows(); }
    void image_stands_free_on_a_transparent_ground();
    void overlay_is_a_badge_in_the_lower_right_corner();
    void png_files_show_what_the_drawing_shows_data() { addIconRows(); }
    void png_files_show_what_the_drawing_shows();
};

void IconsTest::registering_twice_keeps_images_and_adds_none()
{
    QVERIFY(!allIcons().isEmpty());
    const QSet<QString> before = shippedPaths();
    registerVeskWidgetImages();
    registerConsoleImages();
    QCOMPARE(shippedPaths(), before);
    QVERIFY(!QImage(allIcons().first().path).isNull());
}

void IconsTest::resources_hold_the_listed_images_in_three_sizes_and_nothing_else()
{
    QSet<QString> expected;
    for (const Icon& icon : allIcons()) {
        for (const int scale : {1, 2, 3}) {
            expected.insert(icon.pathAt(scale));
        }
    }
    QCOMPARE(shippedPaths(), expected);
}

void IconsTest::every_png_file_of_the_folders_is_shipped()
{
    QSet<QString> files;
    QSet<QString> shipped;
    for (const QString& folder : resourceFolders) {
        const QStringList names = QDir(folder).entryList(QDir::Files);
        shipped.unite(QSet<QString>(names.begin(), names.end()));
    }
    for (const Icon& icon : allIcons()) {
        const QDir folder(sourceFolder.filePath(icon.folder));
        const QStringList names = folder.entryList({QStringLiteral("*.png")}, QDir::Files);
        files.unite(QSet<QString>(names.begin(), names.end()));
    }
    QCOMPARE(files, shipped);
}

void IconsTest::image_loads_in_three_sizes()
{
    QFETCH(int, icon);
    const Icon& entry = allIcons().at(icon);
    for (const int scale : {1, 2, 3}) {
        const QImage image(entry.pathAt(scale));
        QCOMPARE(image.size(), QSize(entry.size, entry.size) * scale);
        QCOMPARE(image.devicePixelRatio(), qreal(scale));
        QVERIFY(image.hasAlphaChannel());
    }
}

void IconsTest::image_stands_free_on_a_transparent_ground()
{
    QFETCH(int, icon);
    const Icon& entry = allIcons().at(icon);
    for (const int scale : {1, 2, 3}) {
        const QImage image(entry.pathAt(scale));
        int clear = 0;
        int solid = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                const int alpha = qAlpha(image.pixel(x, y));
                clear += alpha == 0 ? 1 : 0;
                solid += alpha == 255 ? 1 : 0;
            }
        }
        const int area = image.width() * image.height();
        QVERIFY2(clear > area / 10, "the picture fills its square like a tile");
        if (entry.isOverlay()) {
            QVERIFY2(solid > area / 6, "the badge is too small to be seen");
            continue;
        }
        QVERIFY2(solid > area / 4, "the picture is too thin to be seen");
        QCOMPARE(qAlpha(image.pixel(image.width() / 2, image.height() / 2)), 255);
    }
}

void IconsTest::overlay_is_a_badge_in_the_lower_right_corner()
{
    for (const QString& path : overlayIconPaths()) {
        const QImage image(path);
        const int limit = image.width() * 5 / 16;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                QVERIFY2((x >= limit && y >= limit) || qAlpha(image.pixel(x, y)) == 0,
                         qPrintable(QStringLiteral("%1 at %2, %3").arg(path).arg(x).arg(y)));
            }
        }
    }
}

void IconsTest::png_files_show_what_the_drawing_shows()
{
    QFETCH(int, icon);
    const QString renderer = QStandardPaths::findExecutable(QStringLiteral("rsvg-convert"));
    if (renderer.isEmpty()) {
        QSKIP("rsvg-convert is not installed");
    }
    const Icon& entry = allIcons().at(icon);
    const QString svg =
        sourceFolder.filePath(QStringLiteral("%1/svg/%2.svg").arg(entry.folder, entry.name()));
    QVERIFY2(QFile::exists(svg), qPrintable(svg));
    const QTemporaryDir folder;
    QVERIFY(folder.isValid());
    for (const int scale : {1, 2, 3}) {
        const QString png = folder.filePath(QStringLiteral("%1.png").arg(scale));
        const QStringList arguments = {QStringLiteral("--zoom"), QString::number(scale),
                                       QStringLiteral("--output"), png, svg};
        QCOMPARE(QProcess::execute(renderer, arguments), 0);
        const QImage rendered(png);
        const QImage shipped(entry.pathAt(scale));
        QCOMPARE(shipped.size(), rendered.size());
        // Renderers of different versions round differently.
        QVERIFY2(largestDifference(shipped, rendered) <= 8, "run scripts/render-icons.sh");
    }
}

QTEST_GUILESS_MAIN(IconsTest)
#include "icons_test.moc"
