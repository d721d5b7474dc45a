#pragma once

#include "platform/FileSystem.h"
#include "projectfiles/KeyWordFile.h"
#include "tools/words/QueryClauses.h"
#include "tools/words/SearchPages.h"
#include "tools/words/WordLookup.h"

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

#include <map>

/// A page that answers a question.
struct SearchHit
{
    SearchPage page;
    double score = 0;
    QString reason; ///< "title: pump; 3 × pumps"
};

struct SearchResult
{
    QList<SearchHit> hits;    ///< best first
    QStringList missing = {}; ///< what was asked for and no page holds; there are no hits then
    QString remark = {};      ///< what the author should know of words left out; mostly ""
};

/// Searches a project through its "Search_Words" folder, as a reader would. It shows what lay there
/// when it was made.
class SearchQuery final
{
public:
    /// `projectFolder` ends in a backslash; `keyWords` are the author's, for their synonyms. Raises
    /// 53 when there are no search words yet and 75 when they cannot be read.
    SearchQuery(FileSystem &files, const QString &projectFolder,
                const QList<KeyWord> &keyWords = {});

    /// The pages that hold all that is asked for: pages of the author's keywords first, then by how
    /// often, in which place and how exactly the words stand there. Raises as above.
    [[nodiscard]] SearchResult find(const QString &question);

private:
    struct Answer;
    using Answers = std::map<quint32, Answer>;
    [[nodiscard]] Answers answersTo(const QueryClause &clause);
    [[nodiscard]] Answers answersTo(const QueryWords &words);
    [[nodiscard]] double scoreOf(const std::vector<FoundWord> &words, quint32 page,
                                 double rareness) const;
    [[nodiscard]] SearchHit hit(quint32 page, const Answer &answer) const;

    SearchPages m_pages;
    QHash<quint32, qsizetype> m_places; ///< in m_pages, by number
    double m_averageWords = 1;
    QueryParser m_parser;
    WordLookup m_lookup;
};
