#include "tools/words/SearchQuery.h"

#include "platform/Paths.h"
#include "resources/Counted.h"
#include "tools/words/PageWords.h"

#include <QCoreApplication>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace {

QString tr(const char *text)
{
    return QCoreApplication::translate("SearchQuery", text);
}

QString searchFolder(const QString &projectFolder)
{
    return projectFolder + ProjectFile::searchWordsFolder;
}

double averageWords(const SearchPages &pages)
{
    double words = 0;
    for (const SearchPage &page : pages.pages)
        words += page.words;
    return std::max(1.0, words / std::max(1.0, double(pages.pages.size())));
}

/// Pairs stand for one word, which is there as often as the rarest of them, and where all of them
/// are.
FoundWord joined(const std::vector<FoundWord> &pairs, const QString &shown)
{
    FoundWord word{shown, WordCount::most, ~0U, true};
    for (const FoundWord &pair : pairs) {
        word.count = std::min(word.count, pair.count);
        word.places &= pair.places;
    }
    return word;
}

void addText(QStringList &texts, const QString &text)
{
    if (!texts.contains(text))
        texts.append(text);
}

/// "3 × pump" of the words that tell most: those typed so, then the frequent ones.
QStringList countsOf(std::vector<FoundWord> words)
{
    constexpr qsizetype most = 4;
    std::stable_sort(words.begin(), words.end(), [](const FoundWord &a, const FoundWord &b) {
        return a.isExact != b.isExact ? a.isExact : a.count > b.count;
    });
    QStringList texts;
    for (const FoundWord &word : words) {
        if (texts.size() < most && (word.count > 1 || (word.count == 1 && word.places == 0)))
            addText(texts, u"%1 × %2"_s.arg(word.count).arg(word.text));
    }
    return texts;
}

/// "title: pump; 3 × pumps"
QString reasonOf(const std::vector<FoundWord> &words)
{
    QStringList reasons;
    const auto addPlace = [&](quint32 place, const QString &name) {
        QStringList texts;
        for (const FoundWord &word : words) {
            if (word.places & place)
                addText(texts, word.text);
        }
        if (!texts.isEmpty())
            reasons.append(name + u": "_s + texts.join(u", "_s));
    };
    addPlace(WordPlace::authorKeyWord, tr("keyword"));
    addPlace(WordPlace::title, tr("title"));
    addPlace(WordPlace::heading, tr("heading"));
    addPlace(WordPlace::pageKeyWord, tr("keyword of the page"));
    addPlace(WordPlace::alternative, tr("picture"));
    reasons += countsOf(words);
    return reasons.join(u"; "_s);
}

QString remarkOnCommon(const Query &query)
{
    const QString words = query.tooCommon.join(u", "_s);
    return query.onlyCommon ? tr("Nearly every page holds: %1. Only titles, headings and keywords "
                                 "were searched.")
                                  .arg(words)
                            : tr("Nearly every page holds, and so left out: %1.").arg(words);
}

} // namespace

QString summaryOf(const SearchResult &result, qsizetype shown)
{
    QStringList sentences;
    if (!result.missing.isEmpty())
        sentences.append(tr("No page holds: %1.").arg(result.missing.join(u", "_s)));
    else if (result.hits.isEmpty())
        sentences.append(tr("No page holds all of this."));
    else
        sentences.append(counted(result.hits.size(), tr("1 page found."), tr("%1 pages found.")));
    if (result.hits.size() > shown)
        sentences.append(tr("The best %1 are shown.").arg(shown));
    if (!result.remark.isEmpty())
        sentences.append(result.remark);
    return sentences.join(u' ');
}

struct SearchQuery::Answer
{
    double score = 0;
    std::vector<FoundWord> words;
    bool isBegun = false;

    void add(const Answer &other)
    {
        score += other.score;
        words.insert(words.end(), other.words.begin(), other.words.end());
        isBegun = isBegun || other.isBegun;
    }
    /// Takes up what another way to say the same gave.
    void join(Answer other)
    {
        constexpr double second = 0.25; // holding "max_count" counts for more than both words apart
        const auto [less, more] = std::minmax({score, other.score});
        const double both = more + less * second;
        if (other.isBegun != isBegun ? isBegun : other.score > score)
            *this = std::move(other);
        score = both;
    }
};

SearchQuery::SearchQuery(FileSystem &files, const QString &projectFolder,
                         const QList<KeyWord> &keyWords)
    : m_pages(readSearchPages(files, searchFolder(projectFolder) + u'\\' + SearchFile::pages))
    , m_averageWords(averageWords(m_pages))
    , m_parser(m_pages.language, keyWords)
    , m_lookup(files, searchFolder(projectFolder), m_pages.language, m_pages.shards)
{
    for (qsizetype i = 0; i < m_pages.pages.size(); ++i)
        m_places.insert(m_pages.pages[i].number, i);
}

SearchResult SearchQuery::find(const QString &question)
{
    const Query query = m_parser.parse(question);
    SearchResult result;
    m_isCut = false;
    std::optional<Answers> all;
    for (const QueryClause &clause : query.clauses) {
        Answers answers = answersTo(clause);
        if (answers.empty())
            result.missing.append(clause.shown);
        result.names += clause.names;
        if (!all) {
            all = std::move(answers);
            continue;
        }
        std::erase_if(*all, [&](const auto &entry) { return !answers.contains(entry.first); });
        for (auto &[page, answer] : *all)
            answer.add(answers[page]);
    }
    if (all)
        result.hits = hitsOf(*all);
    result.remark = remarkOn(query);
    return result;
}

QString SearchQuery::remarkOn(const Query &query) const
{
    QStringList remarks;
    if (!query.tooCommon.isEmpty())
        remarks.append(remarkOnCommon(query));
    if (m_isCut)
        remarks.append(tr("Very many words begin so; only the shortest were searched."));
    return remarks.join(u' ');
}

SearchQuery::Answers SearchQuery::answersTo(const QueryClause &clause)
{
    Answers best;
    for (const QueryWords &way : clause.ways) {
        for (auto &[page, answer] : answersTo(way)) {
            const auto [known, isNew] = best.try_emplace(page);
            if (isNew)
                known->second = std::move(answer);
            else
                known->second.join(std::move(answer));
        }
    }
    return best;
}

SearchQuery::Answers SearchQuery::answersTo(const QueryWords &words)
{
    std::optional<Answers> all;
    for (const std::string &word : words.words) {
        Answers answers = scored(m_lookup.find(word), all, false);
        if (words.isUnfinished && &word == &words.words.back()) {
            const BegunPages begun = m_lookup.beginningWith(word);
            m_isCut = m_isCut || !begun.isWhole;
            answers.merge(scored(begun.pages, all, true)); // where the word stands whole, it counts
        }
        all = std::move(answers);
    }
    for (auto &[page, answer] : *all) {
        if (words.arePairs)
            answer.words = {joined(answer.words, words.shown)};
    }
    return std::move(*all);
}

/// Only pages that hold what was asked for before, if anything was.
SearchQuery::Answers SearchQuery::scored(const FoundPages &found,
                                         const std::optional<Answers> &before, bool isBegun) const
{
    const auto pages = double(m_pages.pages.size()), holding = double(found.size());
    const double rareness = std::log(1 + (pages - holding + 0.5) / (holding + 0.5));
    Answers answers;
    for (const auto &[page, matches] : found) {
        if (!m_places.contains(page) || (before && !before->contains(page)))
            continue;
        Answer answer{scoreOf(matches, page, rareness), matches, isBegun};
        if (before) {
            Answer whole = before->at(page);
            whole.add(answer);
            answer = std::move(whole);
        }
        answers.emplace_hint(answers.end(), page, std::move(answer));
    }
    return answers;
}

/// How often and how exactly, as search engines weigh it (BM25), and more for the places that say
/// what a page is about; the shorter the title, the more.
double SearchQuery::scoreOf(const std::vector<FoundWord> &words, quint32 page,
                            double rareness) const
{
    constexpr double saturation = 1.2, lengthWeight = 0.4, inexact = 0.6, pictureOnly = 0.5;
    constexpr double heading = 0.8, pageKeyWord = 0.6, keyWord = 1000;
    const SearchPage &shown = m_pages.pages[m_places[page]];
    double count = 0;
    quint32 places = 0;
    for (const FoundWord &word : words) {
        const double weight = (word.isExact ? 1 : inexact)
                              * (word.places == WordPlace::alternative ? pictureOnly : 1);
        count += word.count * weight;
        places |= word.places;
    }
    const double length = 1 - lengthWeight + lengthWeight * shown.words / m_averageWords;
    double score = count * (saturation + 1) / (count + saturation * length);
    if (places & WordPlace::title)
        score += 1 + 3.0 / double(1 + shown.title.count(u' '));
    if (places & WordPlace::heading)
        score += heading;
    if (places & WordPlace::pageKeyWord)
        score += pageKeyWord;
    return score * rareness + (places & WordPlace::authorKeyWord ? keyWord : 0);
}

/// Pages that hold the last word whole come before those where it only begins others.
QList<SearchHit> SearchQuery::hitsOf(const Answers &answers) const
{
    constexpr qsizetype mostReasons = 1000; // nobody looks further
    std::vector<std::pair<quint32, const Answer *>> best;
    for (const auto &[page, answer] : answers)
        best.emplace_back(page, &answer);
    std::ranges::stable_sort(best, [](const auto &a, const auto &b) {
        const Answer &one = *a.second, &other = *b.second;
        return one.isBegun != other.isBegun ? other.isBegun : one.score > other.score;
    });
    QList<SearchHit> hits;
    hits.reserve(qsizetype(best.size()));
    for (const auto &[page, answer] : best) {
        const bool tellsWhy = hits.size() < mostReasons;
        hits.append({m_pages.pages[m_places[page]], answer->score,
                     tellsWhy ? reasonOf(answer->words) : QString(), answer->isBegun});
    }
    return hits;
}
