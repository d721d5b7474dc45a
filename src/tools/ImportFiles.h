#pragma once

#include "platform/FileSystem.h"
#include "tools/ImportPlan.h"

#include <QByteArray>
#include <QList>
#include <QSet>
#include <QString>
#include <QStringList>

/// The files of one import on their way into a book: first into a fresh folder below the project's
/// _Backup\, then, when all are there and safely on the disk, by moves into the book. Until
/// `finish` everything can be taken back.
class ImportFiles final
{
public:
    /// Both folders end in a backslash. Makes the fresh folder.
    ImportFiles(FileSystem &files, QString projectFolder, QString bookFolder);

    /// Copies the item's file as it is; its read-only mark is not kept.
    void stageCopy(const ImportItem &item);
    /// The same for changed content.
    void stageContent(const ImportItem &item, const QByteArray &content);

    /// Puts everything into the book. Files that shall be replaced are backed up and kept aside;
    /// returns how many. Raises 75 when another name was taken meanwhile.
    int putInPlace();
    /// The import is done: drops what was kept aside.
    void finish();
    /// Takes back everything done so far, as far as the disk lets it. What could not be put back
    /// stays in the fresh folder.
    void undo() noexcept;

private:
    struct Move
    {
        QString from, to;
        bool replaces = false;
    };
    void refuseTakenNames();
    QString nextStaged();
    void note(const QString &staged, const ImportItem &item);
    void makeFolder(const QString &folder);
    void makeTargetFolders(const QString &target);
    void move(const QString &from, const QString &to);

    FileSystem &m_files;
    QString m_projectFolder, m_bookFolder;
    QString m_staging; ///< with backslash
    int m_count = 0;
    QList<Move> m_staged; ///< from here to below the book folder
    QList<Move> m_done;
    QStringList m_made;    ///< folders, parents first
    QSet<QString> m_there; ///< folders that were looked for, or made
};
