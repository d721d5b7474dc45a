#pragma once

#include <QString>

#include <string_view>
#include <unordered_set>
#include <vector>

/// Words so common in a language that they tell no page from another. Those of titles, headings
/// and keywords are indexed all the same.
class StopWords final
{
public:
    /// Those of German for DEU, of English for any other language, since every project holds some.
    explicit StopWords(const QString &language);

    [[nodiscard]] bool contains(std::string_view word) const { return m_words.contains(word); }
    [[nodiscard]] static std::vector<std::string_view> sorted(const QString &language);

private:
    std::unordered_set<std::string_view> m_words;
};
