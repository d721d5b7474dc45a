#pragma once

#include "tools/build/Utf8.h"
#include "tools/words/LetterTable.h"

#include <array>
#include <string>
#include <string_view>
#include <vector>

/// Cuts text into the words that are counted, and a question into the words that are asked for.
/// Words come folded (LetterTable) as UTF-8, at most `longest` bytes of each. The sink is told:
///   part    a word between gaps, or a piece of one with connectors: "iec", "61131", "r100"
///   whole   such a word in one: "iec-61131", "os.path", "c++"
///   single  every character of a script without blanks
///   pair    every two of them that stand beside each other
class WordSplitter final
{
public:
    static constexpr size_t longest = 64;

    template <typename Sink>
    void split(std::string_view text, Sink &sink)
    {
        const char *at = text.data();
        const char *const end = at + text.size();
        while (at != end) {
            if (static_cast<unsigned char>(*at) < 0x80) {
                at = lowered(*at) != 0 ? takeWord(at, end, sink) : at + 1;
                continue;
            }
            const Utf8Character here = utf8At(at, end);
            const LetterKind kind = m_letters.kind(here.code);
            if (kind == LetterKind::Part)
                at = takeWord(at, end, sink);
            else if (kind == LetterKind::Paired || kind == LetterKind::Composing)
                at = takeRun(at, end, sink);
            else
                at += here.length;
        }
    }

private:
    static constexpr int mostParts = 6;

    static constexpr std::array<char, 256> makeLowered()
    {
        std::array<char, 256> table{};
        for (char letter = 'a'; letter <= 'z'; ++letter)
            table[size_t(letter)] = table[size_t(letter - 'a' + 'A')] = letter;
        for (char digit = '0'; digit <= '9'; ++digit)
            table[size_t(digit)] = digit;
        return table;
    }
    /// The small form of a letter or digit of ASCII; 0 for any other byte.
    static char lowered(char byte)
    {
        static constexpr std::array<char, 256> table = makeLowered();
        return table[static_cast<unsigned char>(byte)];
    }
    const char *readPart(const char *at, const char *end);
    /// Length of a connector at `at` that a letter follows; 0 when there is none.
    int connectorAt(const char *at, const char *end) const;
    const char *readRun(const char *at, const char *end);
    void put(char32_t code);
    void compose();

    template <typename Sink>
    const char *takeWord(const char *at, const char *end, Sink &sink)
    {
        m_size = 0;
        for (int parts = 1;; ++parts) {
            const size_t start = m_size;
            at = readPart(at, end);
            sink.part(std::string_view(m_buffer.data() + start, m_size - start));
            const int connector = parts < mostParts ? connectorAt(at, end) : 0;
            if (connector == 0)
                return endWord(at, end, parts, sink);
            m_buffer[m_size++] = connector == 1 ? *at : '-';
            at += connector;
        }
    }

    template <typename Sink>
    const char *endWord(const char *at, const char *end, int parts, Sink &sink)
    {
        if (const auto sign = signAt(at, end); !sign.empty() && parts == 1 && m_size <= 2) {
            for (const char mark : sign)
                m_buffer[m_size++] = mark;
            sink.whole(std::string_view(m_buffer.data(), m_size));
            return at + sign.size();
        }
        if (parts > 1 && m_size <= longest)
            sink.whole(std::string_view(m_buffer.data(), m_size));
        return at;
    }
    /// "++" or "#" that end the name of a language: C++, F#.
    static std::string_view signAt(const char *at, const char *end);

    template <typename Sink>
    const char *takeRun(const char *at, const char *end, Sink &sink)
    {
        at = readRun(at, end);
        const std::string_view run = m_run;
        for (size_t i = 0; i + 1 < m_starts.size(); ++i) {
            sink.single(run.substr(m_starts[i], m_starts[i + 1] - m_starts[i]));
            if (i + 2 < m_starts.size())
                sink.pair(run.substr(m_starts[i], m_starts[i + 2] - m_starts[i]));
        }
        if (putNextLine(at, end))
            sink.pair(std::string_view(m_run).substr(m_starts[m_starts.size() - 2]));
        return at;
    }
    /// Adds the first character behind a blank to the run when the line was only wrapped there.
    bool putNextLine(const char *at, const char *end);

    const LetterTable &m_letters = LetterTable::instance();
    std::array<char, (longest + 4) * mostParts + 4> m_buffer;
    size_t m_size = 0;
    std::string m_run;
    std::vector<quint32> m_starts; ///< of the characters of m_run, and its end
    char32_t m_last = 0;           ///< of the run, as written
};
