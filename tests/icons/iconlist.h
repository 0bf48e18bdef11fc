#pragma once

#include <QList>
#include <QString>

/// One image as the program knows it: its resource path without "@2x", the folder that holds its
/// PNG files and, in svg/, its drawing, and the width and height at one pixel per unit.
struct Icon
{
    QString path;
    QString folder;
    int size;

    /// The name without folder and ending, such as "add".
    [[nodiscard]] QString name() const;

    /// The resource path of the image with `scale` (1, 2 or 3) pixels per unit.
    [[nodiscard]] QString pathAt(int scale) const;
};

/// All images of both resource files, registered with Qt.
const QList<Icon>& allIcons();

/// The resource paths of the four images that stand for security policies, the weakest first.
const QList<QString>& policyIconPaths();

/// Makes a column "icon" and one row for each image, holding its index in allIcons().
void addIconRows();
