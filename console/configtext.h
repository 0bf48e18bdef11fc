#pragma once

#include <QString>

#include <optional>

class QDomDocument;

namespace TextForm {

/// A longer text is cut into pieces of about this size.
inline constexpr qsizetype pieceSize = 4096;

} // namespace TextForm

/// QDomDocument::toString() with an indent of 2, made so that the text depends on the document's
/// content alone, stays the same when it is read and written again, and takes linear time:
/// - The attributes of every element come in an order that depends on their names. The document
///   writes them in hash order, which also depends on the order in which they came in; they are put
///   in again.
/// - A line break that the text form puts between a processing instruction and a text is taken from
///   the text, which would grow by one with each time that it is written.
/// - Long texts are cut into pieces. Each character that must be escaped moves the rest of its node:
///   a text of five million of them would take a quarter of an hour.
///
/// A document without lists of attributes, instructions and long texts gets the same from
/// toString(2). Otherwise the document is as it was when this returns, but for the order of its
/// attributes. Nothing when attributes hold so many characters to be escaped that they, which can't
/// be cut, would take minutes.
[[nodiscard]] std::optional<QString> stableTextForm(const QDomDocument& document);
