#pragma once

#include "controls/quicknav/QuickNavCommands.h"
#include "controls/quicknav/QuickNavContents.h"
#include "controls/quicknav/QuickNavMime.h"

#include <QObject>

/// What the author does to the quick navigation: the commands with their questions, what is said
/// afterwards, and what is shown then. Failures are shown to the author and end here.
class QuickNavEditing final : public QObject
{
    Q_OBJECT

public:
    explicit QuickNavEditing(QuickNavContents &contents, QObject *parent = nullptr);

    [[nodiscard]] QuickNavContents &contents() const { return m_contents; }
    /// What is wrong with a name for a new node below `parent`, or for `node`; "" for nothing.
    [[nodiscard]] QString newNameProblem(const QuickNavRef &parent, const QString &name) const;
    [[nodiscard]] QString nameProblem(const QuickNavRef &node, const QString &name) const;

    void add(const QuickNavRef &parent, const QString &name, int place = -1);
    void rename(const QuickNavRef &node, const QString &name);
    void remove(const QuickNavRef &node);
    void moveBy(const QuickNavRef &node, int places);
    void moveTo(const QuickNavRef &node, const QuickNavRef &parent, int place = -1);
    void copyTo(const QuickNavRef &node, const QuickNavRef &parent, int place = -1);

    void addLinks(const QuickNavRef &category, const QList<QuickNavLink> &links, int place = -1);
    void removeLinks(const QuickNavRef &category, const QStringList &ids);
    void moveLinksBy(const QuickNavRef &category, const QStringList &ids, int places);
    void changeTitle(const QuickNavLink &link, const QString &title);
    void changeAnchor(const QuickNavLink &link, const QString &anchor);
    void retarget(const QuickNavLink &link, const ListedPage &page);
    /// Moves or copies what was dragged or cut to below `parent`; links go into a category.
    void put(const QuickNavItems &items, const QuickNavRef &parent, int place, bool copy);

Q_SIGNALS:
    /// The file was written; `where` is what the change was about, or what it left.
    void written(const QString &view, const QString &category);
    void nodeDeleted();
    /// This is to be shown: what was just made or moved.
    void shown(const QuickNavRef &node);

private:
    template <typename Body>
    void run(const QuickNavRef &about, const Body &body);
    [[nodiscard]] QString nameOf(const QuickNavRef &node) const;
    [[nodiscard]] bool mayDelete(const QuickNavRef &node) const;

    QuickNavContents &m_contents;
    ProjectSession &m_session;
    QuickNavCommands m_commands;
};

/// Links to pages, titled as these.
QList<QuickNavLink> linksTo(const QList<ListedPage> &pages);
