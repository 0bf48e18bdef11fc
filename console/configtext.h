#pragma once

#include <QtGlobal>

class QDomDocument;

namespace TextForm {

/// A longer text is cut into pieces of about this size.
inline constexpr qsizetype pieceSize = 4096;

} // namespace TextForm

/// What making a document ready for its text form came to.
struct TextFormReadiness
{
    /// The text form takes linear time. False when attributes hold so many characters to be escaped
    /// that their escaping, which is quadratic, would take minutes.
    bool isLinear = true;

    /// Nodes were changed: the document is no longer the one that reading its text would give.
    bool isReshaped = false;
};

/// Makes a document ready for QDomDocument::toString(), so that its text depends on its content
/// alone, stays the same when it is read and written again, and takes linear time:
/// - The attributes of every element come into an order that depends on their names. The document
///   writes them in hash order, which also depends on the order in which they came in.
/// - A line break that the text form puts between a processing instruction and a text is taken from
///   the text, which would grow by one with each time that it is written.
/// - Long texts are cut into pieces. Each character that must be escaped moves the rest of its node:
///   a text of ten million of them would take minutes.
///
/// A document without lists of attributes, instructions and long texts is ready as it stands.
[[nodiscard]] TextFormReadiness prepareTextForm(const QDomDocument& document);
