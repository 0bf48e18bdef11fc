#include "base/uastring.h"
#include "platform/allocator.h"

#include <array>
#include <memory>

namespace {

enum class Kind : OpcUa_Byte
{
    Literal,
    AnyRun,
    AnyCharacter,
    Set,
    NegatedSet,
};

/// One item of a compiled pattern, or one member of a set, which is a literal or a range of ASCII.
/// Literals are compared by their bytes, so that malformed ones match themselves alone.
struct Item
{
    Kind kind;
    char rangeEnd; ///< Of a range in a set, whose start is the literal; otherwise a NUL.
    std::string_view literal;
    const Item* next;
    const Item* members;
};

std::string_view firstCharacter(std::string_view text)
{
    return text.substr(0, UaChar::sequenceLength(text.data(), text.size()));
}

/// Whether two ends make a range: both digits, both lower or both upper case, in their order.
bool isRange(std::string_view low, std::string_view high)
{
    const UaChar first = UaChar::decode(low.data(), low.size());
    const UaChar last = UaChar::decode(high.data(), high.size());
    const bool isOneKind = (first.isDigit() && last.isDigit()) ||
                           (first.isLower() && last.isLower()) ||
                           (first.isUpper() && last.isUpper());
    return isOneKind && first.codePoint() <= last.codePoint();
}

/// The first pass: turns a pattern into a linked list of items. An item takes at least one byte of
/// the pattern, which bounds the room.
class Compiler
{
public:
    Compiler(std::string_view pattern, Item* items)
        : m_rest(pattern)
        , m_free(items)
    {
    }

    /// False for an invalid pattern.
    bool compile(const Item** first)
    {
        const Item** end = first;
        while (!m_rest.empty()) {
            Item* item = appendItem(&end);
            if (skip('[')) {
                if (!compileSet(*item)) {
                    return false;
                }
            } else if (skip('%')) {
                item->kind = Kind::AnyRun;
            } else if (skip('_')) {
                item->kind = Kind::AnyCharacter;
            } else if (!takeLiteral(item->literal)) {
                return false;
            }
        }
        return true;
    }

private:
    Item* appendItem(const Item*** end)
    {
        Item* item = std::construct_at(m_free++, Item{Kind::Literal, '\0', {}, nullptr, nullptr});
        **end = item;
        *end = &item->next;
        return item;
    }

    bool skip(char character)
    {
        if (!m_rest.starts_with(character)) {
            return false;
        }
        m_rest.remove_prefix(1);
        return true;
    }

    /// One character by its word, also one behind a "\". False at the end.
    bool takeLiteral(std::string_view& literal)
    {
        skip('\\');
        if (m_rest.empty()) {
            return false;
        }
        literal = firstCharacter(m_rest);
        m_rest.remove_prefix(literal.size());
        return true;
    }

    bool compileSet(Item& set)
    {
        set.kind = skip('^') ? Kind::NegatedSet : Kind::Set;
        const Item** end = &set.members;
        while (!skip(']')) {
            // Read before the item is made: at the end of the pattern there is no room for one.
            std::string_view literal;
            if (!takeLiteral(literal)) {
                return false;
            }
            Item* member = appendItem(&end);
            member->literal = literal;
            if (m_rest.starts_with('-') && !m_rest.starts_with("-]")) {
                m_rest.remove_prefix(1);
                std::string_view high;
                if (!takeLiteral(high) || !isRange(literal, high)) {
                    return false;
                }
                member->rangeEnd = high.front();
            }
        }
        return true;
    }

    std::string_view m_rest;
    Item* m_free;
};

bool isMember(const Item& member, std::string_view character)
{
    if (member.rangeEnd == '\0') {
        return member.literal == character;
    }
    return character.size() == 1 && character.front() >= member.literal.front() &&
           character.front() <= member.rangeEnd;
}

bool isInSet(const Item& set, std::string_view character)
{
    const Item* member = set.members;
    while (member != nullptr && !isMember(*member, character)) {
        member = member->next;
    }
    return member != nullptr;
}

/// Whether an item other than a run takes this character.
bool matchesOne(const Item& item, std::string_view character)
{
    switch (item.kind) {
    case Kind::AnyCharacter:
        return true;
    case Kind::Set:
        return isInSet(item, character);
    case Kind::NegatedSet:
        return !isInSet(item, character);
    default:
        return item.literal == character;
    }
}

/// The second pass. Every item but "%" takes exactly one character, so that only the last "%" ever
/// has to be tried again with one character more, and the time stays within text times pattern.
bool matches(const Item* item, std::string_view text)
{
    const Item* behindRun = nullptr;
    std::string_view runEnd;
    bool hasRun = false;
    while (!text.empty()) {
        const std::string_view character = firstCharacter(text);
        if (item != nullptr && item->kind == Kind::AnyRun) {
            item = item->next;
            behindRun = item;
            runEnd = text;
            hasRun = true;
        } else if (item != nullptr && matchesOne(*item, character)) {
            item = item->next;
            text.remove_prefix(character.size());
        } else if (hasRun) {
            runEnd.remove_prefix(firstCharacter(runEnd).size());
            text = runEnd;
            item = behindRun;
        } else {
            return false;
        }
    }
    while (item != nullptr && item->kind == Kind::AnyRun) {
        item = item->next;
    }
    return item == nullptr;
}

bool compileAndMatch(std::string_view pattern, std::string_view text, Item* items)
{
    const Item* first = nullptr;
    return Compiler(pattern, items).compile(&first) && matches(first, text);
}

} // namespace

bool UaString::like(const UaString& pattern) const noexcept
{
    // Patterns are short as a rule; only a long one needs memory.
    constexpr std::size_t FewItems = 32;
    const std::string_view patternText = pattern.view();
    if (patternText.size() <= FewItems) {
        std::array<Item, FewItems> items;
        return compileAndMatch(patternText, view(), items.data());
    }
    const std::unique_ptr<void, void (*)(void*) noexcept> memory(
        OpcUa_Memory_AllocArray(patternText.size(), sizeof(Item)), OpcUa_Memory_Free);
    return memory != nullptr &&
           compileAndMatch(patternText, view(), static_cast<Item*>(memory.get()));
}
