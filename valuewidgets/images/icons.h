#pragma once

/// Makes the images under the resource prefix ":/veskwidgets/images/" known to Qt.
///
/// The linker drops the images of a static library that nothing calls, so a program calls this
/// before it uses the first one. It needs no application object and may be called again: further
/// calls change nothing. Each image comes in three sizes, "add.png", "add@2x.png" and "add@3x.png";
/// name the first, QIcon and QPixmap find the one that fits the screen.
void registerVeskWidgetImages();
