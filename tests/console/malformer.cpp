#include "tests/console/malformer.h"

#include <utility>

namespace {

const QByteArray snippets[] = {"<![CDATA[<x>&]]>",
                               "<![CDATA[",
                               "]]>",
                               "<!-- c -->",
                               "<!--",
                               "-->",
                               "<?p d?>",
                               "<?p",
                               "<!DOCTYPE a [<!ENTITY e 'x'>]>",
                               "&e;",
                               "&amp;",
                               "&#0;",
                               "&#13;",
                               "&",
                               "<",
                               ">",
                               "\"",
                               "'",
                               "<Trace/>",
                               "<UaEndpoint/>",
                               "<UaServerConfig>",
                               "</UaServerConfig>",
                               "<SecuritySetting/>",
                               "\xEF\xBB\xBF",
                               "\xFF\xFE",
                               "\xED\xA0\x80",
                               "[NodeName]",
                               "журнал",
                               "  \n\t "};

const QByteArray texts[] = {"",
                            " ",
                            "-1",
                            "0",
                            "99999999999999999999",
                            "1e5",
                            "TRUE",
                            "maybe",
                            "[TracePath]",
                            "opc.tcp://",
                            "opc.tcp://[::1]:4840",
                            "https://h:99999999999",
                            "OPC.TCP://a:1",
                            "http://opcfoundation.org/UA/SecurityPolicy#",
                            "Info\n",
                            "<![CDATA[Info]]>",
                            "a<!--c-->b",
                            "<b>x</b>",
                            "<?p d?>x",
                            "😀"};

} // namespace

Malformer::Malformer(QByteArray sample, quint32 seed)
    : m_sample(std::move(sample))
    , m_random(seed)
{
}

QByteArray Malformer::next()
{
    QByteArray bytes = m_sample;
    for (int count = m_random.bounded(1, 5); count > 0 && !bytes.isEmpty(); --count) {
        mutate(bytes);
    }
    return bytes;
}

void Malformer::mutate(QByteArray& bytes)
{
    using Mutation = void (Malformer::*)(QByteArray&);
    // Those that leave most files well-formed stand twice: they reach what lies behind the parser.
    static constexpr Mutation mutations[] = {
        &Malformer::flipBits,      &Malformer::truncate,      &Malformer::removeBytes,
        &Malformer::doubleTag,     &Malformer::removeTag,     &Malformer::exchangeTags,
        &Malformer::doubleElement, &Malformer::doubleElement, &Malformer::emptyElement,
        &Malformer::emptyElement,  &Malformer::replaceText,   &Malformer::replaceText,
        &Malformer::replaceText,   &Malformer::insertSnippet, &Malformer::insertSnippet,
        &Malformer::addAttributes, &Malformer::addAttributes, &Malformer::nest,
        &Malformer::changeLineEnds};
    (this->*mutations[m_random.bounded(int(std::size(mutations)))])(bytes);
}

void Malformer::flipBits(QByteArray& bytes)
{
    for (int count = m_random.bounded(1, 8); count > 0; --count) {
        const qsizetype at = anyPlace(bytes);
        bytes[at] = static_cast<char>(bytes[at] ^ (1 << m_random.bounded(8)));
    }
}

void Malformer::truncate(QByteArray& bytes)
{
    bytes.truncate(anyPlace(bytes));
}

void Malformer::removeBytes(QByteArray& bytes)
{
    bytes.remove(anyPlace(bytes), m_random.bounded(1, 100));
}

void Malformer::doubleTag(QByteArray& bytes)
{
    const Span tag = anyTag(bytes);
    bytes.insert(tag.end, bytes.sliced(tag.begin, tag.end - tag.begin));
}

void Malformer::removeTag(QByteArray& bytes)
{
    const Span tag = anyTag(bytes);
    bytes.remove(tag.begin, tag.end - tag.begin);
}

void Malformer::exchangeTags(QByteArray& bytes)
{
    Span first = anyTag(bytes);
    Span second = anyTag(bytes);
    if (second.begin < first.begin) {
        std::swap(first, second);
    }
    if (first.end > second.begin) {
        return;
    }
    const QByteArray later = bytes.sliced(second.begin, second.end - second.begin);
    const QByteArray earlier = bytes.sliced(first.begin, first.end - first.begin);
    bytes.replace(second.begin, later.size(), earlier);
    bytes.replace(first.begin, earlier.size(), later);
}

void Malformer::doubleElement(QByteArray& bytes)
{
    const Span element = anyElementWithText(bytes);
    bytes.insert(element.end, bytes.sliced(element.begin, element.end - element.begin));
}

void Malformer::emptyElement(QByteArray& bytes)
{
    const Span element = anyElementWithText(bytes);
    const qsizetype begin = bytes.indexOf('>', element.begin) + 1;
    const qsizetype end = bytes.lastIndexOf('<', element.end - 1);
    bytes.remove(begin, qMax<qsizetype>(end - begin, 0));
}

void Malformer::replaceText(QByteArray& bytes)
{
    const Span element = anyElementWithText(bytes);
    const qsizetype begin = bytes.indexOf('>', element.begin) + 1;
    const qsizetype end = bytes.lastIndexOf('<', element.end - 1);
    bytes.replace(begin, qMax<qsizetype>(end - begin, 0),
                  texts[m_random.bounded(int(std::size(texts)))]);
}

void Malformer::insertSnippet(QByteArray& bytes)
{
    // Between tags or anywhere.
    const qsizetype at = m_random.bounded(2) == 0 ? anyTag(bytes).end : anyPlace(bytes);
    bytes.insert(at, snippets[m_random.bounded(int(std::size(snippets)))]);
}

void Malformer::addAttributes(QByteArray& bytes)
{
    const qsizetype end = anyTag(bytes).end - 1;
    const int count = m_random.bounded(10) == 0 ? m_random.bounded(900, 1100) : m_random.bounded(6);
    QByteArray attributes;
    for (int i = 0; i < count; ++i) {
        attributes += " a" + QByteArray::number(i) + "='&#9;v'";
    }
    if (m_random.bounded(4) == 0) {
        attributes += " huge='" + QByteArray(m_random.bounded(100'000), 'h') + "'";
    }
    bytes.insert(qMax<qsizetype>(end, 0), attributes);
}

void Malformer::nest(QByteArray& bytes)
{
    const int depth = m_random.bounded(3) == 0 ? m_random.bounded(490, 510) : m_random.bounded(20);
    bytes.insert(anyTag(bytes).end,
                 QByteArray("<n>").repeated(depth) + QByteArray("</n>").repeated(depth));
}

void Malformer::changeLineEnds(QByteArray& bytes)
{
    bytes.replace("\n", m_random.bounded(2) == 0 ? "\r\n" : "\r");
}

Malformer::Span Malformer::anyTag(const QByteArray& bytes)
{
    const qsizetype begin = bytes.indexOf('<', anyPlace(bytes));
    const qsizetype end = begin < 0 ? -1 : bytes.indexOf('>', begin);
    return end < 0 ? Span{0, 0} : Span{begin, end + 1};
}

/// From a start tag to the end tag behind its text, as in "<Url>x</Url>".
Malformer::Span Malformer::anyElementWithText(const QByteArray& bytes)
{
    const qsizetype close = bytes.indexOf("</", anyPlace(bytes));
    const qsizetype open = close < 0 ? -1 : bytes.lastIndexOf('<', qMax<qsizetype>(close - 1, 0));
    const qsizetype end = open < 0 ? -1 : bytes.indexOf('>', close);
    return end < 0 ? Span{0, 0} : Span{open, end + 1};
}

qsizetype Malformer::anyPlace(const QByteArray& bytes)
{
    return bytes.isEmpty() ? 0 : m_random.bounded(static_cast<qint64>(bytes.size()));
}
