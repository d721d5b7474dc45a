#pragma once

#include "platform/FileSystem.h"
#include "projectfiles/changes/FileChanges.h"
#include "tools/import/ImportPlan.h"

#include <QByteArray>
#include <QList>
#include <QSet>
#include <QString>

/// The files of one import on their way into a book: first into a fresh folder of the project, from
/// which the steps of one change then move them. Nothing in the book changes here.
class ImportFiles final
{
public:
    /// The first two end in a backslash. `fresh` is a free path below the project folder whose
    /// parent is there; the folder is made.
    ImportFiles(FileSystem &files, QString projectFolder, QString bookFolder, QString fresh);

    /// Copies the item's file as it is; its read-only mark is not kept.
    void stageCopy(const ImportItem &item);
    /// The same for changed content.
    void stageContent(const ImportItem &item, const QByteArray &content);

    /// Flushes what was staged and gives the steps that put everything into the book. Files that
    /// shall be replaced are backed up, and the steps move them aside. Raises 70 when one of those
    /// is locked, 75 when another name was taken meanwhile.
    QList<FileStep> steps();
    /// How many of the steps replace a file.
    [[nodiscard]] int replaced() const { return m_replaced; }
    /// Deletes what was staged, as far as the disk lets it.
    void discard() noexcept;

private:
    struct Staged
    {
        QString from, to; ///< full paths
        bool replaces = false;
        QString aside; ///< where the file goes that is replaced
    };
    QString nextStaged();
    void note(const QString &staged, const ImportItem &item);
    void backUpReplaced();
    void refuseTakenNames();
    void makeFolders(const QString &target, QList<FileStep> &steps);
    [[nodiscard]] QString relative(const QString &path) const;

    FileSystem &m_files;
    QString m_projectFolder, m_bookFolder;
    QString m_fresh; ///< with backslash
    int m_count = 0, m_replaced = 0;
    QList<Staged> m_staged;
    QSet<QString> m_there; ///< folders that are there, or will be
};
