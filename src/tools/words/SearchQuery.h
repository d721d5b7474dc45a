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
#include <optional>

/// A page that answers a question.
struct SearchHit
{
    SearchPage page;
    double score = 0;
    QString reason;       ///< "title: pump; 3 × pumps"; of the best thousand only
    bool isBegun = false; ///< the last word stands there only as the beginning of others
};

struct SearchResult
{
    QList<SearchHit> hits;    ///< best first
    QStringList missing = {}; ///< what was asked for and no page holds; there are no hits then
    QString remark = {};      ///< what the author should know of words left out; mostly ""
    QStringList names = {};   ///< other names of what was asked for, as keywords of the author say
};

/// How many pages were found, or what is missing, in sentences; `shown`: the list ends there.
QString summaryOf(const SearchResult &result, qsizetype shown);

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
    /// often, in which place and how exactly the words stand there. A word at the very end of the
    /// question is also looked for as a beginning; pages that hold it whole come first. Raises as
    /// above.
    [[nodiscard]] SearchResult find(const QString &question);

    /// Reads one file ahead of the questions, some milliseconds; false when all are read. Raises as
    /// above.
    bool readMore() { return m_lookup.readMore(); }

private:
    struct Answer;
    using Answers = std::map<quint32, Answer>;
    [[nodiscard]] Answers answersTo(const QueryClause &clause);
    [[nodiscard]] Answers answersTo(const QueryWords &words);
    [[nodiscard]] Answers scored(const FoundPages &found, const std::optional<Answers> &before,
                                 bool isBegun) const;
    [[nodiscard]] QString remarkOn(const Query &query) const;
    [[nodiscard]] double scoreOf(const std::vector<FoundWord> &words, quint32 page,
                                 double rareness) const;
    [[nodiscard]] QList<SearchHit> hitsOf(const Answers &answers) const;

    SearchPages m_pages;
    QHash<quint32, qsizetype> m_places; ///< in m_pages, by number
    double m_averageWords = 1;
    QueryParser m_parser;
    WordLookup m_lookup;
    bool m_isCut = false; ///< the last question begins more words than were looked at
};
