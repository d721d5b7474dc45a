#pragma once

#include "platform/FileSystem.h"
#include "platform/Progress.h"
#include "tools/migration/FreePlaces.h"
#include "tools/migration/LegacyPlaces.h"

#include <QSet>

/// Writes the pages and images of a book set into the project's folder.
class LegacyFiles final
{
public:
    struct Where
    {
        QString folder; ///< with backslash
        QString language;
    };
    LegacyFiles(FileSystem &files, Where where, const LegacyBookSet &set,
                const LegacyPlaces &places, MigrationNotes &notes);

    /// Raises QvError and `Unwinding{Stopped}`.
    void write(LegacyContents &contents, FreePlaces &free, const Progress &progress);

    /// Of pages and global pages, in the order of rows: those of the database, else what the page
    /// calls itself.
    [[nodiscard]] const QStringList &pageTitles() const { return m_pageTitles; }
    [[nodiscard]] const QStringList &globalTitles() const { return m_globalTitles; }

private:
    struct Page;
    QString writePage(const Page &page, const std::optional<QString> &html);
    QString titleOf(const Page &page, const QString &html);
    QByteArray bytesOf(const Page &page, const QString &html);
    void writeImage(qsizetype at, const std::optional<QByteArray> &data, FreePlaces &free);
    QByteArray followedSheet(const PlacedFile &sheet, const QByteArray &bytes);
    void put(const QString &path, const QByteArray &bytes);
    void makeFolder(const QString &folder);
    void step(const Progress &progress, const QString &what);

    FileSystem &m_files;
    const Where m_where;
    const LegacyBookSet &m_set;
    const LegacyPlaces &m_places;
    MigrationNotes &m_notes;
    QStringList m_pageTitles, m_globalTitles;
    QSet<QString> m_made; ///< folders
    int m_done = 0;
    int m_imagesLost = 0;
};
