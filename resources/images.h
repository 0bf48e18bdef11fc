#pragma once

/// Makes the images under the resource prefix ":/images/" known to Qt.
///
/// The linker drops the images of a static library that nothing calls, so the console calls this
/// first of all. It needs no application object and may be called again: further calls change
/// nothing. Each image comes in three sizes; name the one without "@2x" or "@3x".
void registerConsoleImages();
