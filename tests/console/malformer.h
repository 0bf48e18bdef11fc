#pragma once

#include <QByteArray>
#include <QRandomGenerator>

/// Makes malformed files out of a good one, always the same for the same seed: flipped bits, missing
/// ends, tags that are doubled, lost or exchanged, texts out of place, and huge or deep pieces.
class Malformer
{
public:
    Malformer(QByteArray sample, quint32 seed);

    /// The next file: the sample after one to four mutations.
    [[nodiscard]] QByteArray next();

private:
    void mutate(QByteArray& bytes);
    void flipBits(QByteArray& bytes);
    void truncate(QByteArray& bytes);
    void removeBytes(QByteArray& bytes);
    void doubleTag(QByteArray& bytes);
    void removeTag(QByteArray& bytes);
    void exchangeTags(QByteArray& bytes);
    void doubleElement(QByteArray& bytes);
    void emptyElement(QByteArray& bytes);
    void replaceText(QByteArray& bytes);
    void insertSnippet(QByteArray& bytes);
    void addAttributes(QByteArray& bytes);
    void nest(QByteArray& bytes);
    void changeLineEnds(QByteArray& bytes);

    /// The first and the one behind the last byte of a tag.
    struct Span
    {
        qsizetype begin;
        qsizetype end;
    };
    [[nodiscard]] Span anyTag(const QByteArray& bytes);
    [[nodiscard]] Span anyElementWithText(const QByteArray& bytes);
    [[nodiscard]] qsizetype anyPlace(const QByteArray& bytes);

    QByteArray m_sample;
    QRandomGenerator m_random;
};
