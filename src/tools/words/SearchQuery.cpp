#include "tools/words/SearchQuery.h"

#include "platform/Paths.h"
#include "tools/words/PageWords.h"

#include <QCoreApplication>

#include <algorithm>
#include <cmath>
#include <optional>

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

QString remarkOf(const Query &query)
{
    if (query.tooCommon.isEmpty())
        return {};
    const QString words = query.tooCommon.join(u", "_s);
    return query.onlyCommon ? tr("Nearly every page holds: %1. Only titles, headings and keywords "
                                 "were searched.")
                                  .arg(words)
                            : tr("Nearly every page holds, and so left out: %1.").arg(words);
}

} // namespace

struct SearchQuery::Answer
{
    double score = 0;
    std::vector<FoundWord> words;
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
    SearchResult result{.hits = {}, .missing = {}, .remark = remarkOf(query)};
    std::optional<Answers> all;
    for (const QueryClause &clause : query.clauses) {
        Answers answers = answersTo(clause);
        if (answers.empty())
            result.missing.append(clause.shown);
        if (!all) {
            all = std::move(answers);
            continue;
        }
        std::erase_if(*all, [&](const auto &entry) { return !answers.contains(entry.first); });
        for (auto &[page, answer] : *all) {
            const Answer &more = answers[page];
            answer.score += more.score;
            answer.words.insert(answer.words.end(), more.words.begin(), more.words.end());
        }
    }
    for (const auto &[page, answer] : all.value_or(Answers()))
        result.hits.append(hit(page, answer));
    std::stable_sort(result.hits.begin(), result.hits.end(),
                     [](const SearchHit &a, const SearchHit &b) { return a.score > b.score; });
    return result;
}

SearchQuery::Answers SearchQuery::answersTo(const QueryClause &clause)
{
    constexpr double secondWay = 0.25; // holding "max_count" counts for more than both words apart
    Answers best;
    for (const QueryWords &way : clause.ways) {
        for (auto &[page, answer] : answersTo(way)) {
            Answer &known = best[page];
            const auto [less, more] = std::minmax({known.score, answer.score});
            const double both = more + less * secondWay;
            if (answer.score > known.score)
                known = std::move(answer);
            known.score = both;
        }
    }
    return best;
}

SearchQuery::Answers SearchQuery::answersTo(const QueryWords &words)
{
    std::optional<Answers> all;
    for (const std::string &word : words.words) {
        Answers answers;
        const FoundPages found = m_lookup.find(word);
        const auto pages = double(m_pages.pages.size()), holding = double(found.size());
        const double rareness = std::log(1 + (pages - holding + 0.5) / (holding + 0.5));
        for (const auto &[page, matches] : found) {
            if (!m_places.contains(page) || (all && !all->contains(page)))
                continue;
            Answer &answer = answers[page];
            answer.score = scoreOf(matches, page, rareness);
            answer.words = matches;
            if (all) {
                Answer &before = (*all)[page];
                answer.score += before.score;
                answer.words.insert(answer.words.begin(), before.words.begin(), before.words.end());
            }
        }
        all = std::move(answers);
    }
    for (auto &[page, answer] : *all) {
        if (words.arePairs)
            answer.words = {joined(answer.words, words.shown)};
    }
    return std::move(*all);
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

SearchHit SearchQuery::hit(quint32 page, const Answer &answer) const
{
    return {m_pages.pages[m_places[page]], answer.score, reasonOf(answer.words)};
}
