#pragma once

#include "platform/FileSystem.h"
#include "startup/Session.h"

#include <QList>
#include <QString>
#include <QStringList>

/// A search keyword of a project, with the pages it leads to.
struct KeyWord
{
    struct Page
    {
        QString book; ///< acronym
        QString page; ///< id in the book
        friend bool operator==(const Page &, const Page &) = default;
    };
    QString text;
    QString origin; ///< Author, Heading, Meta or Index
    QStringList synonyms;
    QList<Page> pages;
};

/// "QV_SearchKeyWords.xml" of a project. A missing file lists none; an unreadable one raises 75.
QList<KeyWord> readKeyWords(Session &session, FileSystem &files, const QString &project);
/// Makes the file or rewrites its list, keeping what is not known here; a keyword is meant by its
/// origin and text, a page by book and id. The previous version goes to _Backup\.
void writeKeyWords(Session &session, FileSystem &files, const QString &project,
                   const QList<KeyWord> &keyWords);
