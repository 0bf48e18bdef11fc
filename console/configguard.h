#pragma once

#include <QStringView>

/// What a configuration text may hold at most. The XML parser takes quadratic time for deep or
/// attribute-rich input, its text form recurses once a level, and its nodes take fifty times the
/// memory of the text that they come from, so that a text beyond these limits is refused before it
/// is parsed.
struct ConfigLimits
{
    static constexpr qint64 maxBytes = 64 * 1024 * 1024;
    static constexpr int maxDepth = 500;
    static constexpr int maxAttributes = 1000;

    /// Elements, comments, sections and instructions. By the memory and the time that they take, an
    /// element with attributes counts as six, each attribute as two, and a fiftieth of the square of
    /// their number is added.
    static constexpr qint64 maxNodes = 2'000'000;

    /// Characters that the text form puts before its nodes as their indent, by an upper bound.
    static constexpr qint64 maxIndent = 2 * maxBytes;

    /// References of any kind in a text that declares entities of its own; the parser lets an
    /// entity bring 4096 characters.
    static constexpr qint64 maxReferences = 256;
};

/// What a pass over the markup of an XML text has found.
struct MarkupExtent
{
    int depth = 0;          ///< Of the deepest element.
    qint64 attributes = 0;  ///< Of the element that has most.
    qint64 nodes = 0;       ///< As ConfigLimits::maxNodes counts them.
    qint64 indent = 0;      ///< As ConfigLimits::maxIndent counts it.
    qint64 longestText = 0; ///< Of the texts, sections, comments and attribute values.
    qint64 references = 0;  ///< Counted only when entities are declared.
    bool hasInstructions = false;
    bool declaresEntities = false;

    /// The document type declares attributes or parameter entities, with which a short text can
    /// become any document, or an instruction has a name beyond plain letters, digits and "_-.:",
    /// with which the text form can't be read back.
    bool isUnforeseeable = false;

    [[nodiscard]] bool isWithinLimits() const
    {
        return depth <= ConfigLimits::maxDepth && attributes <= ConfigLimits::maxAttributes &&
               nodes <= ConfigLimits::maxNodes && indent <= ConfigLimits::maxIndent &&
               references <= ConfigLimits::maxReferences && !isUnforeseeable;
    }
};

/// Looks over an XML text in one linear pass that knows comments, CDATA sections, processing
/// instructions and the document type; it doesn't judge whether the text is well-formed. It ends
/// where the text goes beyond a limit. Elements that the text hides in entities of its own are not
/// seen: see isShallow().
[[nodiscard]] MarkupExtent measureMarkup(QStringView text);

/// Whether a text consists of characters that XML 1.0 allows (section 2.2, production Char), that
/// is, whether the parser takes each of them back when they are written.
[[nodiscard]] bool isXmlText(QStringView text);
