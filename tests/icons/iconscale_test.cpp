// QIcon picks the image that was drawn for the screen's scale. Qt reads the scale once for each
// application object, so the test runs as often as there are scales.

#include "tests/icons/iconlist.h"

#include <QGuiApplication>
#include <QIcon>
#include <QImage>
#include <QTest>

class IconScaleTest : public QObject
{
    Q_OBJECT

public:
    explicit IconScaleTest(int scale)
        : m_scale(scale)
    {
    }

private Q_SLOTS:
    void icon_gives_the_image_drawn_for_the_scale_data() { addIconRows(); }
    void icon_gives_the_image_drawn_for_the_scale();

private:
    int m_scale;
};

void IconScaleTest::icon_gives_the_image_drawn_for_the_scale()
{
    QFETCH(int, icon);
    const Icon& entry = allIcons().at(icon);
    QCOMPARE(qGuiApp->devicePixelRatio(), qreal(m_scale));
    const QPixmap pixmap = QIcon(entry.path).pixmap(QSize(entry.size, entry.size));
    QCOMPARE(pixmap.devicePixelRatio(), qreal(m_scale));
    QCOMPARE(pixmap.size(), QSize(entry.size, entry.size) * m_scale);
    // A pixmap holds its colours multiplied by the opacity, a file doesn't.
    const QImage::Format format = QImage::Format_ARGB32_Premultiplied;
    QCOMPARE(pixmap.toImage().convertToFormat(format),
             QImage(entry.pathAt(m_scale)).convertToFormat(format));
}

int main(int argc, char** argv)
{
    int failures = 0;
    for (const int scale : {1, 2, 3}) {
        qputenv("QT_SCALE_FACTOR", QByteArray::number(scale));
        const QGuiApplication application(argc, argv);
        IconScaleTest test(scale);
        failures += QTest::qExec(&test, argc, argv);
    }
    return failures;
}

#include "iconscale_test.moc"
