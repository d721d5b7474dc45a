#pragma once

#include "controls/session/ProjectSession.h"

#include <QHash>

/// A page that a book lists.
struct ListedPage
{
    TocBook book;
    QString id, title;
    QString path; ///< relative to the project folder; "" when the stored one leaves the book
};

/// All pages of all books that can be read, in the order of the project.
QList<ListedPage> listedPages(ProjectSession &session);

/// Where a quick-navigation link leads, and what is wrong with it.
struct LinkTarget
{
    enum class State { Good, NoBook, UnreadableBook, NoPage, NoFile, NoAnchor } state = State::Good;
    QString book; ///< name; of a book that has gone its acronym
    QString page; ///< title; of a page that has gone its id
    QString path; ///< relative to the project folder
    [[nodiscard]] bool isDead() const { return state != State::Good; }
    /// The state in words for the author.
    [[nodiscard]] QString word() const;
};

/// Finds where links lead; each book and file is looked up once until `forget`. Which anchors a
/// page has is known as far as the project's pages have been read.
class LinkTargets final
{
public:
    explicit LinkTargets(ProjectSession &session);

    [[nodiscard]] LinkTarget of(const QuickNavLink &link);
    /// The listed book that a link means; null when there is none.
    [[nodiscard]] const TocBook *bookOf(const QuickNavLink &link) const;
    void forget();

private:
    struct Known
    {
        QString name;
        LinkTarget::State state = LinkTarget::State::Good;
        QHash<QString, ListedPage> pages; ///< by id
    };
    const Known &known(const QString &acronym);
    [[nodiscard]] bool isThere(const QString &path);
    [[nodiscard]] bool hasAnchor(const QString &path, const QString &anchor) const;

    ProjectSession &m_session;
    QHash<QString, Known> m_books; ///< by acronym, folded
    QHash<QString, bool> m_files;
};
