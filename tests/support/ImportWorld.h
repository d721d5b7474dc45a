#pragma once

#include "platform/Paths.h"
#include "platform/TreeWalker.h"
#include "projectfiles/BookFile.h"
#include "support/TestProgram.h"
#include "tools/import/SourceImport.h"

/// A project with one empty book, and a folder of files to add to it.
class ImportWorld : public TestProgram
{
public:
    const TocBook guide{QStringLiteral("Guide"),
                        QStringLiteral("GD"),
                        QStringLiteral("Plant"),
                        QStringLiteral("Book_GD"),
                        QStringLiteral("Book_GD.xml"),
                        {},
                        {}};
    const QString project = QStringLiteral("S:\\Docs\\Plant\\");
    const QString bookFolder = project + QStringLiteral("Book_GD\\");
    const QString source = QStringLiteral("C:\\Source\\");
    FileChanges last; ///< what the last import did, or taking it back

    explicit ImportWorld(const QString &language = QStringLiteral("ENU"))
    {
        session.projectLanguage = language;
        files.makeFolder(withoutBackslash(project));
        Book empty;
        empty.name = guide.name;
        BookFile(session, files).write(QStringLiteral("Plant"), guide, empty);
        files.makeFolder(withoutBackslash(source));
        files.makeFolder(project + ProjectFile::backupFolder);
    }

    void putSource(const QString &name, const QByteArray &content) { put(source + name, content); }
    SourceImport import() { return {session, files}; }
    /// A free path in the project's folder of backups.
    QString fresh(const QString &name)
    {
        const QString path = project + ProjectFile::backupFolder + u'\\' + name;
        if (files.folderExists(path))
            deleteTree(files, path);
        return path;
    }

    ImportResult run(const ImportPlan &decided, const Progress &progress = {},
                     const Progress &applying = {})
    {
        ImportResult result = import().stage(decided, fresh(QStringLiteral("Added")), progress);
        applyChanges(files, project, result.changes, applying);
        last = result.changes;
        return result;
    }
    /// Takes the last import back, or does it again.
    void reverse()
    {
        last = last.reversed();
        applyChanges(files, project, last);
    }
    Book book() { return BookFile(session, files).read(QStringLiteral("Plant"), guide); }
};
