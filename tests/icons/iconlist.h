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

    /// Whether the image is laid over another one.
    [[nodiscard]] bool isOverlay() const;

    /// The resource path of the image with `scale` (1, 2 or 3) pixels per unit.
    [[nodiscard]] QString pathAt(int scale) const;
};

/// All images of both resource files, registered with Qt.
const QList<Icon>& allIcons();

/// The resource paths of the four images that stand for security policies, the weakest first.
const QList<QString>& policyIconPaths();

/// The resource paths of the images that stand for the states of certificates: trusted, rejected, own.
const QList<QString>& stateIconPaths();

/// The resource paths of the images that are laid over those when a certificate's time has not come
/// or is over, and when it is soon over.
const QList<QString>& overlayIconPaths();

/// Makes a column "icon" and one row for each image, holding its index in allIcons().
void addIconRows();
