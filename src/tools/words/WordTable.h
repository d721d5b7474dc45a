#pragma once

#include <QtGlobal>

#include <string>
#include <string_view>
#include <vector>

/// Words by number, each once, in the order they came.
class WordTable final
{
public:
    WordTable();

    /// The number of a word, which is added if need be.
    quint32 numberOf(std::string_view word);
    [[nodiscard]] std::string_view word(quint32 number) const
    {
        return std::string_view(m_bytes).substr(m_starts[number],
                                                m_starts[number + 1] - m_starts[number]);
    }
    [[nodiscard]] quint32 size() const { return static_cast<quint32>(m_starts.size() - 1); }
    /// Makes room for so many words at once.
    void reserve(quint32 words);

private:
    struct Slot
    {
        quint32 hash = 0;
        quint32 number = 0; ///< plus 1; 0: free
    };
    void place(Slot slot);
    void grow(size_t slots);

    std::vector<Slot> m_slots; ///< a power of two, at most two thirds of it taken
    std::vector<quint32> m_starts{0};
    std::string m_bytes;
};
