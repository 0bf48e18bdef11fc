#pragma once

#include <QString>

// Text from outside (URLs, file names) made fit to be shown. The value itself stays whole.

/// Cuts a text that is longer than the limit in its middle, with an ellipsis there. Laying out a
/// text of megabytes would stop the window.
[[nodiscard]] QString cutForDisplay(const QString& text, qsizetype limit = 1000);

/// Makes one line of a text that may hold anything: cut like cutForDisplay, with a blank for each line
/// break or tab, and a replacement character for every other control character and for the marks that
/// change the direction of what follows, which could make a name look like another.
[[nodiscard]] QString lineForDisplay(const QString& text, qsizetype limit = 1000);

/// A tooltip that shows the text as it stands, whatever markup it holds, cut and broken into lines.
[[nodiscard]] QString plainToolTip(const QString& text);
