#pragma once

#include <QDateTime>
#include <QList>
#include <QString>
#include <QStringList>

/// Name of the log in the merged project's folder.
inline constexpr QLatin1StringView mergeLogFile{"Merge_Log.txt"};

/// What to merge and into what.
struct MergeRequest
{
    QString name, id;
    QString language;     ///< "" takes the base project's
    QStringList projects; ///< in the order of the merge list, without empty slots
};

/// Something the author should know about a merge.
struct MergeFinding
{
    enum class Kind {   // in the order of the titles
        BookRenamed,    ///< its acronym was taken and got the suffix
        BookLeftOut,    ///< its name and its new acronym are both there already
        AcronymDoubled, ///< the suffixed acronym is taken as well
        FolderRenamed,  ///< the folder's name was taken
        LinksUnchanged, ///< links into a renamed folder that could not be looked at or changed
        CategoryLeftOut,
        NotCopied,  ///< files that a book has or may use are not there, or others are
        Unreadable, ///< a file that was kept as it is
        LinkFile,   ///< what merging the link files had to say
    };

    Kind kind;
    QString project; ///< the one it came from; may be empty, as the next two
    QString book;
    QString acronym; ///< in the merged project
    QString detail;  ///< a sentence
};

/// The kind in a few words, such as "Book renamed".
QString titleOf(MergeFinding::Kind kind);

struct MergeResult
{
    QString base;      ///< the project the merged one is a copy of
    QStringList order; ///< in which the projects were merged, the base first
    int books = 0;     ///< in the merged table of contents
    QList<MergeFinding> findings;
    QString logPath; ///< full path of Merge_Log.txt
};

/// The text of the log: a summary, what went wrong if anything did, and a line for each finding.
QString mergeLog(const MergeRequest &request, const MergeResult &result, const QDateTime &when,
                 const QString &failure = {});
