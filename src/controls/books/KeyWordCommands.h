#pragma once

#include "controls/session/ProjectSession.h"
#include "projectfiles/KeyWordFile.h"

#include <QCoreApplication>

/// The search keywords that authors give to pages: each stands with its page in the book file, and
/// as an entry of the author's in the project's keyword file. Every change is one command that can
/// be undone, raises as `ProjectSession::perform`, and is false when there was nothing to do.
class KeyWordCommands
{
    Q_DECLARE_TR_FUNCTIONS(KeyWordCommands)

public:
    explicit KeyWordCommands(ProjectSession &session);

    /// The keyword takes the spelling that it has in the project. A page that has it stays as it
    /// is.
    bool add(const TocBook &entry, const QString &page, const QString &keyWord);
    /// The project's entry goes with its last page.
    bool remove(const TocBook &entry, const QString &page, const QString &keyWord);
    /// Of the author's keyword of that text in the whole project.
    bool setSynonyms(const TocBook &entry, const QString &page, const QString &keyWord,
                     const QStringList &synonyms);
    [[nodiscard]] QStringList synonyms(const QString &keyWord) const;

    /// Pieces of other commands: pages go (no ids: all of the book), a book gets another acronym.
    static void forgetPages(ProjectSession &session, StagedFiles &files, const TocBook &entry,
                            const std::optional<QStringList> &ids);
    static void redirect(ProjectSession &session, StagedFiles &files, const QString &fromBook,
                         const QString &toBook);

private:
    ProjectSession &m_session;
};
