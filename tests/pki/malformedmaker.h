#pragma once

#include "tests/pki/dertree.h"

#include <random>
#include <string>
#include <vector>

/// Makes malformed files out of good ones: the same ones from the same seed, on every system.
class MalformedMaker
{
public:
    explicit MalformedMaker(unsigned seed)
        : m_random(seed)
    {
    }

    /// A sample, in DER or PEM, changed in one to three places. `others` lend their parts.
    [[nodiscard]] std::string change(const std::string& sample,
                                     const std::vector<std::string>& others);

private:
    /// A number below the limit.
    std::size_t below(std::size_t limit) { return m_random() % limit; }
    std::string randomBytes(std::size_t size);
    /// Changes bytes without regard to what they mean.
    void changeBytes(std::string& bytes);
    /// Changes an item and keeps all lengths around it right.
    std::string changeNode(const std::string& bytes, const std::vector<std::string>& others);
    void changeContent(DerNode& node);
    void changePlace(DerNode& node, const std::vector<std::string>& others);
    std::string changeText(const std::string& text, const std::vector<std::string>& others);

    std::mt19937 m_random;
};
