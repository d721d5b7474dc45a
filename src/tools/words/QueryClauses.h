#pragma once

#include "projectfiles/KeyWordFile.h"
#include "tools/words/StopWords.h"
#include "tools/words/WordForms.h"

#include <QString>
#include <QStringList>

#include <string>
#include <vector>

/// Words that a page must hold all of.
struct QueryWords
{
    std::vector<std::string> words = {}; ///< as WordSplitter gives them
    /// Two characters of a script without blanks each: together they stand for `shown`.
    bool arePairs = false;
    QString shown = {};        ///< as typed
    bool isUnfinished = false; ///< the last word also stands for all that begin with it
};

/// One thing that is asked for; any of its ways to say it will do.
struct QueryClause
{
    QString shown = {}; ///< as typed
    std::vector<QueryWords> ways = {};
    QStringList names = {}; ///< of the keyword that this is, itself and its synonyms
};

/// A question, taken apart: a page must answer all clauses.
struct Query
{
    std::vector<QueryClause> clauses = {};
    QStringList tooCommon = {}; ///< words that were left out, or all when there are only such
    bool onlyCommon = false;    ///< clauses are of stop words
};

/// Takes questions apart by the rules that the index is made by. Blanks and quotation marks part
/// what is asked for. What a keyword of the author or one of its synonyms says is asked for by all
/// its names. A word at the very end may be unfinished.
class QueryParser final
{
public:
    QueryParser(const QString &language, const QList<KeyWord> &keyWords);

    [[nodiscard]] Query parse(const QString &question) const;

private:
    struct Piece;
    using Key = std::vector<std::vector<std::string>>; ///< the stems of each word
    /// A keyword or synonym, and all names of the same thing.
    struct Name
    {
        std::vector<Key> keys; ///< of its pieces
        QStringList names;
    };
    [[nodiscard]] Piece pieceOf(const QString &text) const;
    [[nodiscard]] std::vector<Piece> piecesOf(const QString &text) const;
    [[nodiscard]] QueryClause clauseOf(const std::vector<Piece> &pieces, size_t first,
                                       size_t count) const;
    static void leaveOpen(Piece &piece);
    void takeName(const QStringList &names, const QString &name);
    void addSynonyms(QueryClause &clause, const Name &name) const;
    [[nodiscard]] static bool areSame(const Key &a, const Key &b);
    [[nodiscard]] const Name *nameAt(const std::vector<Piece> &pieces, size_t first) const;

    WordForms m_forms;
    StopWords m_stopWords;
    std::vector<Name> m_names; ///< longest first
};
