#include "tools/words/AuthorKeyWords.h"

#include "platform/Paths.h"
#include "tools/words/WordSplitter.h"

#include <QCoreApplication>

#include <algorithm>

namespace {

Finding leadsNowhere(const KeyWord &keyWord, const KeyWord::Page &page)
{
    const QString text = QCoreApplication::translate(
                             "SearchWords", "The keyword \"%1\" leads to page %2 of the book "
                                            "%3, which is not there. Take the page out of "
                                            "the keyword, or give it its file back.")
                             .arg(keyWord.text, page.page, page.book);
    return {QStringLiteral("WORD03"),
            Severity::Warning,
            ProjectFile::keyWords,
            0,
            text,
            keyWord.text + u'|' + page.book + u'|' + page.page};
}

/// All kinds of words alike, as words of a page.
struct Words
{
    WordTable &table;
    std::vector<PageWord> &words;
    void part(std::string_view word)
    {
        words.push_back({table.numberOf(word), {WordPlace::authorKeyWord}});
    }
    void whole(std::string_view word) { part(word); }
    void single(std::string_view word) { part(word); }
    void pair(std::string_view word) { part(word); }
};

void dropDoubles(std::vector<PageWord> &words)
{
    std::sort(words.begin(), words.end(),
              [](const PageWord &a, const PageWord &b) { return a.word < b.word; });
    const auto end =
        std::unique(words.begin(), words.end(),
                    [](const PageWord &a, const PageWord &b) { return a.word == b.word; });
    words.erase(end, words.end());
}

} // namespace

AuthorKeyWords::AuthorKeyWords(const BuildInput &input, const ScannedPages &scanned)
{
    for (const KeyWord &keyWord : input.keyWords)
        note(input, scanned, keyWord);
}

void AuthorKeyWords::note(const BuildInput &input, const ScannedPages &scanned,
                          const KeyWord &keyWord)
{
    for (const KeyWord::Page &page : keyWord.pages) {
        const QString path = input.pageFile(page.book, page.page);
        const ProjectListing::Found found = scanned.listing().find(ProjectListing::listed(path));
        if (found.match != ProjectListing::Match::Exact
            && found.match != ProjectListing::Match::OtherCase) {
            m_findings.append(leadsNowhere(keyWord, page));
            continue;
        }
        std::vector<std::string> &texts = m_texts[found.file];
        texts.push_back(keyWord.text.toStdString());
        for (const QString &synonym : keyWord.synonyms)
            texts.push_back(synonym.toStdString());
    }
}

void AuthorKeyWords::apply(const std::vector<WordPage> &pages)
{
    WordSplitter splitter;
    for (const WordPage &page : pages) {
        const auto texts = m_texts.find(page.scanned->file);
        if (texts == m_texts.end())
            continue;
        m_pages.push_back({page.shown.number, {}});
        Words words{m_words, m_pages.back().words};
        for (const std::string &text : texts->second)
            splitter.split(text, words);
        dropDoubles(m_pages.back().words);
    }
}

PostingLists AuthorKeyWords::lists() const
{
    std::vector<NumberedPage> pages;
    pages.reserve(m_pages.size());
    for (const Page &page : m_pages)
        pages.push_back({page.number, page.words});
    return {m_words.size(), pages};
}
