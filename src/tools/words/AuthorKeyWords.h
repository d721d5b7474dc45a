#pragma once

#include "tools/build/Finding.h"
#include "tools/words/PostingLists.h"
#include "tools/words/WordPage.h"
#include "tools/words/WordTable.h"

#include <string>
#include <unordered_map>
#include <vector>

/// The words of QV_SearchKeyWords.xml and of its synonyms, with the pages that they lead to.
class AuthorKeyWords final
{
public:
    AuthorKeyWords(const BuildInput &input, const ScannedPages &scanned);

    /// Finds the words of these pages; afterwards `words` and `lists` are theirs.
    void apply(const std::vector<WordPage> &pages);
    [[nodiscard]] const WordTable &words() const { return m_words; }
    [[nodiscard]] PostingLists lists() const;
    /// Of keywords that lead to no page.
    [[nodiscard]] const QList<Finding> &findings() const { return m_findings; }

private:
    void note(const BuildInput &input, const ScannedPages &scanned, const KeyWord &keyWord);

    struct Page
    {
        quint32 number = 0;
        std::vector<PageWord> words;
    };
    std::unordered_map<quint32, std::vector<std::string>> m_texts; ///< by file of the listing
    WordTable m_words;
    std::vector<Page> m_pages;
    QList<Finding> m_findings;
};
