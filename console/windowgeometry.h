#pragma once

#include <QByteArray>

class QDomDocument;
class QDomElement;

/// The saved geometry that a configuration file holds for the main window; empty when it has none.
[[nodiscard]] QByteArray readWindowGeometry(const QDomElement& root);

/// Stores a geometry in the document, whose elements for it are made where they are missing.
void writeWindowGeometry(QDomDocument& document, const QByteArray& geometry);
