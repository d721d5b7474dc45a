#include "tools/words/QueryClauses.h"

#include "tools/words/WordSplitter.h"

#include <QRegularExpression>

#include <algorithm>

namespace {

/// What WordSplitter finds in a piece of a question.
struct Found
{
    std::vector<std::string> parts, wholes, pairs;
    bool isCovered = false;  ///< the next single character is the second one of a pair
    bool endsInPart = false; ///< which is a word that letters may still be added to

    void part(std::string_view word)
    {
        parts.emplace_back(word);
        endsInPart = true;
    }
    void whole(std::string_view word) { wholes.emplace_back(word); }
    void single(std::string_view word)
    {
        if (!isCovered)
            pairs.emplace_back(word);
        isCovered = false;
        endsInPart = false;
    }
    void pair(std::string_view word)
    {
        if (!pairs.empty() && word.starts_with(pairs.back())
            && pairs.back().size() < word.size()) // the single one that begins it
            pairs.pop_back();
        pairs.emplace_back(word);
        isCovered = true;
    }
};

bool endsInSign(const std::string &word)
{
    return word.ends_with('+') || word.ends_with('#');
}

} // namespace

/// What stands between two blanks.
struct QueryParser::Piece
{
    QString shown;
    std::vector<QueryWords> ways; ///< none: nothing but stop words
    Key key;                      ///< to compare pieces by
    QStringList stopWords;
    bool endsInWord = false; ///< that is searched for
};

QueryParser::QueryParser(const QString &language, const QList<KeyWord> &keyWords)
    : m_forms(language)
    , m_stopWords(language)
{
    for (const KeyWord &keyWord : keyWords) {
        const QStringList names = QStringList(keyWord.text) + keyWord.synonyms;
        for (const QString &name : names) {
            if (names.size() > 1)
                takeName(names, name);
        }
    }
    std::stable_sort(m_names.begin(), m_names.end(),
                     [](const Name &a, const Name &b) { return a.keys.size() > b.keys.size(); });
}

void QueryParser::takeName(const QStringList &names, const QString &name)
{
    Name taken{{}, names};
    for (const Piece &piece : piecesOf(name))
        taken.keys.push_back(piece.key);
    if (!taken.keys.empty())
        m_names.push_back(std::move(taken));
}

Query QueryParser::parse(const QString &question) const
{
    std::vector<Piece> pieces = piecesOf(question);
    const bool goesOn = !pieces.empty() && question.back().isLetterOrNumber()
                        && question.endsWith(pieces.back().shown);
    if (goesOn)
        leaveOpen(pieces.back());
    Query query;
    for (size_t at = 0; at < pieces.size();) {
        const Name *const name = nameAt(pieces, at);
        const size_t count = name ? name->keys.size() : 1;
        QueryClause clause = clauseOf(pieces, at, count);
        if (name)
            addSynonyms(clause, *name);
        for (size_t i = at; i < at + count; ++i)
            query.tooCommon += pieces[i].stopWords;
        if (!clause.ways.empty())
            query.clauses.push_back(std::move(clause));
        at += count;
    }
    query.onlyCommon = query.clauses.empty() && !query.tooCommon.isEmpty();
    for (const QString &word : query.onlyCommon ? query.tooCommon : QStringList())
        query.clauses.push_back({word, {{{word.toStdString()}, false, word}}});
    if (query.onlyCommon && goesOn)
        query.clauses.back().ways.back().isUnfinished = true;
    query.tooCommon.removeDuplicates();
    return query;
}

std::vector<QueryParser::Piece> QueryParser::piecesOf(const QString &text) const
{
    static const QRegularExpression gaps(QStringLiteral("[\\s\"„“”«»「」『』]+"));
    std::vector<Piece> pieces;
    for (const QString &piece : text.split(gaps, Qt::SkipEmptyParts)) {
        Piece found = pieceOf(piece);
        if (!found.ways.empty() || !found.stopWords.isEmpty())
            pieces.push_back(std::move(found));
    }
    return pieces;
}

QueryParser::Piece QueryParser::pieceOf(const QString &text) const
{
    Found found;
    WordSplitter splitter;
    splitter.split(text.toStdString(), found);
    Piece piece{text, {}, {}, {}};
    for (const auto *words : {&found.parts, &found.pairs}) {
        for (const std::string &word : *words)
            piece.key.push_back(m_forms.stemsOf(word));
    }
    const bool isWhole = found.wholes.size() == 1 && found.pairs.empty();
    if (isWhole)
        piece.ways.push_back({found.wholes, false, text});
    if (isWhole && endsInSign(found.wholes.front()))
        return piece;
    QueryWords words{found.pairs, !found.pairs.empty(), text};
    words.arePairs = words.arePairs && found.parts.empty();
    piece.endsInWord = found.endsInPart && !m_stopWords.contains(found.parts.back());
    for (std::string &word : found.parts) {
        if (m_stopWords.contains(word))
            piece.stopWords.append(QString::fromStdString(word));
        else
            words.words.push_back(std::move(word));
    }
    if (!words.words.empty())
        piece.ways.push_back(std::move(words));
    return piece;
}

/// The last word of a piece that may still be typed on.
void QueryParser::leaveOpen(Piece &piece)
{
    for (QueryWords &way : piece.ways)
        way.isUnfinished = piece.endsInWord;
}

/// Several pieces that are one name must all be there, each in its plainest way.
QueryClause QueryParser::clauseOf(const std::vector<Piece> &pieces, size_t first,
                                  size_t count) const
{
    if (count == 1)
        return {pieces[first].shown, pieces[first].ways};
    QueryWords all;
    const std::vector<QueryWords> &lastWays = pieces[first + count - 1].ways;
    all.isUnfinished = !lastWays.empty() && lastWays.back().isUnfinished;
    for (size_t i = first; i < first + count; ++i) {
        all.shown += (i > first ? QStringLiteral(" ") : QString()) + pieces[i].shown;
        if (!pieces[i].ways.empty())
            all.words.insert(all.words.end(), pieces[i].ways.back().words.begin(),
                             pieces[i].ways.back().words.end());
    }
    return {all.shown, all.words.empty() ? std::vector<QueryWords>() : std::vector{all}};
}

void QueryParser::addSynonyms(QueryClause &clause, const Name &name) const
{
    clause.names = name.names;
    for (const QString &other : name.names) {
        const std::vector<Piece> pieces = piecesOf(other);
        if (pieces.empty())
            continue;
        for (QueryWords &way : clauseOf(pieces, 0, pieces.size()).ways) {
            const bool isNew =
                std::ranges::find(clause.ways, way.words, &QueryWords::words) == clause.ways.end();
            if (isNew)
                clause.ways.push_back(std::move(way));
        }
    }
}

bool QueryParser::areSame(const Key &a, const Key &b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), haveOneInCommon);
}

const QueryParser::Name *QueryParser::nameAt(const std::vector<Piece> &pieces, size_t first) const
{
    const auto isHere = [&](const Name &name) {
        if (name.keys.size() > pieces.size() - first)
            return false;
        for (size_t i = 0; i < name.keys.size(); ++i) {
            if (!areSame(pieces[first + i].key, name.keys[i]))
                return false;
        }
        return true;
    };
    const auto found = std::find_if(m_names.begin(), m_names.end(), isHere);
    return found == m_names.end() ? nullptr : &*found;
}
