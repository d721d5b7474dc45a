#pragma once

#include "catalogue/NameClaim.h"
#include "catalogue/RenamePlan.h"
#include "tools/rename/RenameSurvey.h"

#include <functional>
#include <optional>
#include <vector>

/// Gives a project another name: its folder, its entry in the list of projects, the table of
/// contents, books, markers in pages, its link file and, when wanted, those of other projects. All
/// of it or nothing: a failure takes back what was done, and what a dying program began is finished
/// by the next one from the plan in Docs.
class ProjectRename final
{
public:
    ProjectRename(Program &program, QString oldName, QString newName, bool alsoOthers);

    /// Raises, having changed nothing: 5 when the project is not listed or the new name is taken,
    /// 70 when another author makes, renames or deletes one of the two or has the project open
    /// (whoever calls has let go of it), or when a file is read-only, 75
    /// when a folder of the new name is there or a file changed meanwhile, 5 or 75 naming a page
    /// that cannot take the new name; Unwinding when stopped.
    void run(const Progress &progress = {});

    /// Finishes what `plan` says, or drops it when nothing had been done. False when the program
    /// that wrote it is still at work. Raises what stands in the way; the plan stays then.
    static bool finish(Program &program, const RenamePlan &plan);

    /// The rule by which the files change, for what else holds their contents.
    [[nodiscard]] RenamedContent content() const;

private:
    struct OtherFile
    {
        QString path;
        QByteArray before, after;
    };
    using TakeBack = std::vector<std::function<void()>>;

    void claim();
    void requireFree();
    void requireClosed();
    [[nodiscard]] FileChanges changes(const RenameSurvey &survey, const QString &folder,
                                      const Progress &progress) const;
    [[nodiscard]] QList<OtherFile> others() const;
    void perform(FileChanges &changes, TakeBack &takeBack, const Progress &progress);
    void writeOthers(const QList<OtherFile> &others, TakeBack &takeBack);
    void undo(TakeBack &takeBack, const RenamePlan &plan);
    void finishFrom(const RenamePlan &plan);
    void complete(const RenamePlan &plan);
    void moveFolder(const QString &from, const QString &to);
    [[nodiscard]] QString folderOf(const QString &name) const;
    [[nodiscard]] bool isListed(const QString &name) const;
    [[nodiscard]] bool hasFolder(const QString &name) const;
    [[nodiscard]] bool onlyCapitals() const;

    Program &m_program;
    FileSystem &m_files;
    QString m_old, m_new;
    bool m_alsoOthers;
    std::optional<NameClaim> m_oldClaim, m_newClaim; ///< nobody else changes what has these names
};

/// What the language puts in front of a typed name to make that of the folder ("DEU_"); "" when
/// `project` does not begin with it.
QString languagePrefix(const QString &project, const QString &language);

/// Finishes all renames that dying programs left. Returns what the author should know, one line
/// for each that could not be finished now.
QStringList finishRenames(Program &program);

/// The same for the renames that `project` has part in. Raises what stands in the way: 70 when
/// another program is at it, 76 when the project has another name now.
void finishRenamesOf(Program &program, const QString &project);
