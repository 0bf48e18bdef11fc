#pragma once

#include <QString>

// Text from outside (URLs, file names) made fit to be shown. The value itself stays whole.

/// Cuts a text that is longer than the limit in its middle, with an ellipsis there. Laying out a
/// text of megabytes would stop the window.
[[nodiscard]] QString cutForDisplay(const QString& text, qsizetype limit = 1000);

/// A tooltip that shows the text as it stands, whatever markup it holds, cut and broken into lines.
[[nodiscard]] QString plainToolTip(const QString& text);
