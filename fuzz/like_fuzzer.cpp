// A pattern and a text, parted by the first byte's count: the answer is that of a second matcher that
// tries everything, and of a text against itself with every character escaped.

#include "base/uastring.h"
#include "fuzz/likereference.h"
#include "fuzz/require.h"

#include <algorithm>
#include <cstdint>

namespace {

UaString toString(std::string_view text)
{
    return {text.data(), static_cast<OpcUa_Int64>(text.size())};
}

std::string escape(std::string_view text)
{
    std::string pattern;
    while (!text.empty()) {
        const std::size_t length = UaChar::sequenceLength(text.data(), text.size());
        pattern += '\\';
        pattern += text.substr(0, length);
        text.remove_prefix(length);
    }
    return pattern;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    const std::size_t split = input.empty() ? 0 : std::min<std::size_t>(data[0], size - 1);
    const std::string_view pattern = input.substr(input.empty() ? 0 : 1, split);
    const std::string_view text = input.substr(std::min(size, split + 1));

    const bool matches = toString(text).like(toString(pattern));
    // The second matcher takes exponential time in the number of runs.
    if (text.size() <= 40 && std::count(pattern.begin(), pattern.end(), '%') <= 3) {
        require(matches == LikeReference::matches(pattern, text));
    }
    require(toString(text).like(toString(escape(text))));
    require(toString(text).like("%"));
    return 0;
}
