#include "tests/icons/iconlist.h"

#include "resources/images.h"
#include "valuewidgets/images/icons.h"

#include <QFileInfo>
#include <QTest>

namespace {

const QString editorFolder = QStringLiteral("valuewidgets/images");
const QString consoleFolder = QStringLiteral("resources");

QList<Icon> registeredIcons()
{
    registerVeskWidgetImages();
    registerConsoleImages();
    QList<Icon> icons;
    for (const char* name : {"add", "remove", "copyTo", "encr_none", "encr_basic128rsa15",
                             "encr_basic256", "encr_basic256sha256"}) {
        icons.append({QStringLiteral(":/veskwidgets/images/%1.png").arg(QLatin1String(name)),
                      editorFolder, 16});
    }
    for (const char* name : {"on", "clearlog", "overlay_error", "overlay_warning"}) {
        icons.append({QStringLiteral(":/veskwidgets/images/%1.png").arg(QLatin1String(name)),
                      editorFolder, 64});
    }
    icons.append({QStringLiteral(":/images/serverproperties.png"), consoleFolder, 48});
    icons.append({QStringLiteral(":/images/ua_64x64.png"), consoleFolder, 64});
    return icons;
}

} // namespace

QString Icon::name() const
{
    return QFileInfo(path).completeBaseName();
}

bool Icon::isOverlay() const
{
    return name().startsWith(QStringLiteral("overlay_"));
}

QString Icon::pathAt(int scale) const
{
    if (scale == 1) {
        return path;
    }
    return path.chopped(4) + QStringLiteral("@%1x.png").arg(scale);
}

const QList<Icon>& allIcons()
{
    static const QList<Icon> icons = registeredIcons();
    return icons;
}

const QList<QString>& policyIconPaths()
{
    static const QList<QString> paths = {
        QStringLiteral(":/veskwidgets/images/encr_none.png"),
        QStringLiteral(":/veskwidgets/images/encr_basic128rsa15.png"),
        QStringLiteral(":/veskwidgets/images/encr_basic256.png"),
        QStringLiteral(":/veskwidgets/images/encr_basic256sha256.png"),
    };
    return paths;
}

const QList<QString>& stateIconPaths()
{
    static const QList<QString> paths = {
        QStringLiteral(":/veskwidgets/images/on.png"),
        QStringLiteral(":/veskwidgets/images/clearlog.png"),
        QStringLiteral(":/images/ua_64x64.png"),
    };
    return paths;
}

const QList<QString>& overlayIconPaths()
{
    static const QList<QString> paths = {
        QStringLiteral(":/veskwidgets/images/overlay_error.png"),
        QStringLiteral(":/veskwidgets/images/overlay_warning.png"),
    };
    return paths;
}

void addIconRows()
{
    QTest::addColumn<int>("icon");
    for (int i = 0; i < allIcons().size(); ++i) {
        QTest::addRow("%s", qPrintable(allIcons().at(i).name())) << i;
    }
}
