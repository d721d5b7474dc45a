#pragma once

#include "dialogs/NewProjectFolder.h"
#include "platform/Progress.h"
#include "startup/Program.h"

#include <QString>
#include <QStringList>

#include <functional>

/// The wizard's work without its boxes: makes the folder and files of the session's project and
/// lists it. A failure leaves folder and files as far as they got, but for a copy. Raises 70 while
/// another author makes a project of the same name, 5 when that has happened in the meantime.
/// Errors whose source begins with `formTag` name the step that failed.
class ProjectCreation final
{
public:
    /// Runs work under a progress display and throws what the work throws.
    using Runner = std::function<void(const std::function<void(const Progress &)> &)>;

    using FolderAnswer = NewProjectFolder::Answer;

    static constexpr QLatin1StringView formTag{"QV_Developer::frmSelPrjTypetoAdd-"};

    explicit ProjectCreation(Program &program);

    /// Sets the session's project name (with the language in front unless it is ENU), language
    /// and ID.
    void name(const QString &typedName, const QString &id, const QString &language);

    /// True when no project of that name is in the catalogue.
    bool nameIsFree();

    /// Asks what to do when the project's folder is there with anything in it; moves it aside when
    /// the author says so.
    FolderAnswer settleFolder();

    /// Makes an empty project. False when its table of contents is not there to be filled; the
    /// author has been told and nothing is listed.
    bool addNew(const QString &typedName);

    /// Copies a catalogued project. A copy that cannot be written is told and ends the program;
    /// Stop throws Unwinding. Neither these nor an error leave anything of the copy behind, but for
    /// a whole one that could not be listed.
    void addCopy(const QString &source, const Runner &run);

    /// Lists a folder that is already there, as it is. Raises 53 or 75 when its table of contents
    /// cannot be read.
    void listAgain();

private:
    void makeCopy(const QString &source, const Progress &progress);
    void requireTableOfContents(const QString &source);
    void copyFiles(const QString &source, const Progress &progress);
    void tellWhatWasLeftOut();
    void makeGlobalBook();
    void makeCurrent();
    [[nodiscard]] QString folder() const;

    Program &m_program;
    NewProjectFolder m_folder;
    QStringList mstrCategories;
    QStringList m_leftOut;
};
