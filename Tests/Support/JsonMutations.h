#pragma once

#include <cstddef>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace tallyfox::test {

/// Makes legal JSON texts slightly wrong, or different but still right; the same in every run.
class JsonMutations {
public:
    explicit JsonMutations(std::vector<std::string_view> seeds)
        : m_seeds(std::move(seeds))
    { }

    std::string next();

private:
    std::size_t below(std::size_t bound)
    {
        return static_cast<std::size_t>(m_random() % bound);
    }
    std::string_view pieceOf(std::string_view text);
    void mutate(std::string& text);

    std::vector<std::string_view> m_seeds;
    std::mt19937_64 m_random{20250304};
};

/// `text` without what only some readers refuse: in strings every unicode escape becomes that of A and every byte above
/// 0x7F an x; elsewhere every run of digits is cut to two. None of that changes the grammar.
std::string withoutReaderLimits(std::string_view text);

} // namespace tallyfox::test
