#pragma once

#include "platform/FileSystem.h"
#include "projectfiles/TableOfContents.h"
#include "startup/Session.h"
#include "viewer/ViewerPlace.h"

#include <QList>

struct BookPage;

/// An entry of a set's contents: a page, or a heading over others.
struct ContentsEntry
{
    QString title;
    ViewerPlace place; ///< without a page for a heading
    QList<ContentsEntry> entries = {};
};

/// What a built set holds, file by file as it is asked for. Each raises 53 or 75 naming the file.
class SetContents final
{
public:
    SetContents(Session &session, FileSystem &files, QString set);

    [[nodiscard]] QList<TocBook> books() const;
    [[nodiscard]] QList<ContentsEntry> pages(const TocBook &book) const;
    [[nodiscard]] QList<ContentsEntry> globalPages() const;
    /// View, group, topic, category, links: from the index that a build made. Raises 53 when there
    /// is none yet.
    [[nodiscard]] QList<ContentsEntry> quickNavigation() const;

private:
    [[nodiscard]] QList<ContentsEntry> entriesOf(const TocBook &book,
                                                 const QList<BookPage> &pages) const;

    Session &m_session;
    FileSystem &m_files;
    QString m_set;
};
