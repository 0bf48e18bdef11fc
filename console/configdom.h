#pragma once

#include <QDomElement>
#include <QString>

#include <initializer_list>

class QDomDocument;

// Steps through the document of a configuration file that more than one reader or writer takes.

/// Follows a path of element names, the first match at each level. Null when one is missing.
[[nodiscard]] QDomElement descend(QDomElement from, std::initializer_list<QString> names);

/// The child element of that name, made and appended when it is missing.
QDomElement obtainChild(QDomElement parent, const QString& name);

/// Puts a new value into the first child of an element, whatever kind of node that is. An element
/// without a child takes nothing; neither does a comment or a processing instruction that can't hold
/// the value without breaking the text of the file.
void setFirstChildValue(const QDomElement& element, const QString& value);

/// Puts a new text into the first child of an element when that is a text or a CDATA section; a
/// section that can't hold the text, because of its "]]>", becomes a plain text. An empty text takes
/// the child away, as reading it from the file would. Any other element takes nothing.
void setFirstChildText(const QDomElement& element, const QString& text);

/// Appends a child element that holds one text node.
QDomElement appendTextElement(QDomElement parent, const QString& name, const QString& text);

/// Whether no element lies deeper than the limit. Looks at the parsed document, in which entities of
/// the text's own have brought their elements.
[[nodiscard]] bool isShallow(const QDomDocument& document, int maxDepth);
