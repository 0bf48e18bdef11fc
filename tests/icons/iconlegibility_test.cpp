// What an eye needs to tell the images from the ground behind them and from one another, measured:
// contrast against light, dark and selected rows, and shapes that differ without their colours.

#include "tests/icons/iconlist.h"

#include <QColor>
#include <QImage>
#include <QPainter>
#include <QTest>

#include <cmath>

namespace {

/// A picture and its ground in one, as on the screen.
QImage onGround(const QString& path, const QColor& ground)
{
    QImage screen(QImage(path).size(), QImage::Format_RGB32);
    screen.fill(ground);
    QPainter painter(&screen);
    painter.drawImage(QRect(QPoint(), screen.size()), QImage(path));
    return screen;
}

/// Pictures laid over one another on a ground, at the 16 pixels that they have in a list.
QImage inList(const QList<QString>& paths, const QColor& ground)
{
    QImage row(16, 16, QImage::Format_RGB32);
    row.fill(ground);
    QPainter painter(&row);
    for (const QString& path : paths) {
        const QImage picture(path);
        painter.drawImage(
            QPoint(), picture.scaled(row.size(), Qt::KeepAspectRatio, Qt::SmoothTransformation));
    }
    return row;
}

double linear(int channel)
{
    const double value = channel / 255.0;
    return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

/// Relative luminance, 0 for black to 1 for white, as the contrast rules for web content define it.
double luminance(QRgb color)
{
    return 0.2126 * linear(qRed(color)) + 0.7152 * linear(qGreen(color)) +
           0.0722 * linear(qBlue(color));
}

/// 1 for equal luminance to 21 for black on white; 3 is asked of symbols.
double contrast(QRgb a, QRgb b)
{
    const double la = luminance(a) + 0.05;
    const double lb = luminance(b) + 0.05;
    return la > lb ? la / lb : lb / la;
}

/// The part of the picture's own pixels, 0 to 1, that stand out from the ground by 3 to 1.
double visiblePart(const QString& path, const QColor& ground)
{
    const QImage picture(path);
    const QImage screen = onGround(path, ground);
    int own = 0;
    int visible = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            if (qAlpha(picture.pixel(x, y)) < 128) {
                continue;
            }
            ++own;
            visible += contrast(screen.pixel(x, y), ground.rgb()) >= 3.0 ? 1 : 0;
        }
    }
    return own == 0 ? 0.0 : double(visible) / own;
}

/// Number of pixels whose grey differs by more than a quarter of the way from black to white.
int differentGreys(const QImage& a, const QImage& b)
{
    int count = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            count += std::abs(qGray(a.pixel(x, y)) - qGray(b.pixel(x, y))) > 64 ? 1 : 0;
        }
    }
    return count;
}

struct Ground
{
    const char* name;
    QRgb color;
};

constexpr Ground grounds[] = {
    {"white", 0xffffffff},
    {"light window", 0xfff0f0f0},
    {"dark window", 0xff2b2b2b},
    {"highlight", 0xff308cc6},
};

} // namespace

class IconLegibilityTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void three_tenths_of_each_image_stand_out_from_the_ground_data();
    void three_tenths_of_each_image_stand_out_from_the_ground();
    void policy_images_differ_without_their_colours_data();
    void policy_images_differ_without_their_colours();
    void states_of_certificates_differ_without_their_colours_data();
    void states_of_certificates_differ_without_their_colours();
    void measure_tells_a_picture_from_an_invisible_one();
};

void IconLegibilityTest::three_tenths_of_each_image_stand_out_from_the_ground_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QColor>("ground");
    for (const Icon& icon : allIcons()) {
        for (const Ground& ground : grounds) {
            QTest::addRow("%s on %s", qPrintable(icon.name()), ground.name)
                << icon.path << QColor(ground.color);
        }
    }
}

void IconLegibilityTest::three_tenths_of_each_image_stand_out_from_the_ground()
{
    QFETCH(QString, path);
    QFETCH(QColor, ground);
    const double part = visiblePart(path, ground);
    QVERIFY2(part >= 0.3, qPrintable(QString::number(part)));
}

void IconLegibilityTest::policy_images_differ_without_their_colours_data()
{
    QTest::addColumn<QString>("first");
    QTest::addColumn<QString>("second");
    QTest::addColumn<QColor>("ground");
    const QList<QString>& paths = policyIconPaths();
    for (int i = 0; i < paths.size(); ++i) {
        for (int j = i + 1; j < paths.size(); ++j) {
            for (const Ground& ground : grounds) {
                QTest::addRow("%d and %d on %s", i, j, ground.name)
                    << paths.at(i) << paths.at(j) << QColor(ground.color);
            }
        }
    }
}

void IconLegibilityTest::policy_images_differ_without_their_colours()
{
    QFETCH(QString, first);
    QFETCH(QString, second);
    QFETCH(QColor, ground);
    const QImage a = onGround(first, ground);
    const QImage b = onGround(second, ground);
    QCOMPARE(a.size(), QSize(16, 16));
    QCOMPARE(b.size(), QSize(16, 16));
    const int count = differentGreys(a, b);
    QVERIFY2(count >= 16, qPrintable(QString::number(count)));
}

void IconLegibilityTest::states_of_certificates_differ_without_their_colours_data()
{
    QTest::addColumn<QColor>("ground");
    for (const Ground& ground : grounds) {
        QTest::addRow("%s", ground.name) << QColor(ground.color);
    }
}

void IconLegibilityTest::states_of_certificates_differ_without_their_colours()
{
    QFETCH(QColor, ground);
    QList<QImage> pictures;
    for (const QString& state : stateIconPaths()) {
        pictures.append(inList({state}, ground));
        for (const QString& overlay : overlayIconPaths()) {
            pictures.append(inList({state, overlay}, ground));
        }
    }
    for (int i = 0; i < pictures.size(); ++i) {
        for (int j = i + 1; j < pictures.size(); ++j) {
            const int count = differentGreys(pictures[i], pictures[j]);
            QVERIFY2(count >= 8,
                     qPrintable(QStringLiteral("%1 and %2: %3").arg(i).arg(j).arg(count)));
        }
    }
}

void IconLegibilityTest::measure_tells_a_picture_from_an_invisible_one()
{
    const QString path = policyIconPaths().first();
    const QImage white = onGround(path, Qt::white);
    QCOMPARE(differentGreys(white, white), 0);
    QCOMPARE(contrast(0xff000000, 0xffffffff), 21.0);
    QCOMPARE(contrast(0xff808080, 0xff808080), 1.0);
    QCOMPARE(visiblePart(QStringLiteral(":/no/such.png"), Qt::white), 0.0);
}

QTEST_GUILESS_MAIN(IconLegibilityTest)
#include "iconlegibility_test.moc"
