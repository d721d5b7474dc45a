#pragma once

#include "controls/quicknav/LinkTargets.h"
#include "controls/quicknav/QuickNavTree.h"

#include <QHash>
#include <QObject>

/// The quick navigation of the open project as its editor shows it: what was read last, where its
/// links lead, and how many there are below each node. It follows the session while somebody looks
/// at it, and costs nothing while nobody does.
class QuickNavContents final : public QObject
{
    Q_OBJECT

public:
    struct Tally
    {
        int children = 0; ///< right below
        int links = 0;    ///< below at any depth
        int dead = 0;     ///< of these
    };

    explicit QuickNavContents(ProjectSession &session, QObject *parent = nullptr);

    [[nodiscard]] const QuickNav &nav() const { return m_nav; }
    [[nodiscard]] QString problem() const { return m_problem; } ///< why it could not be read, or ""
    [[nodiscard]] Tally tallyOf(const QuickNavRef &node) const;
    [[nodiscard]] LinkTarget targetOf(const QuickNavLink &link) { return m_targets.of(link); }
    [[nodiscard]] LinkTargets &targets() { return m_targets; }
    [[nodiscard]] ProjectSession &session() const { return m_session; }

    /// Whether somebody looks at it.
    void setWatched(bool watched);
    /// Brings it up to date now, if it is not.
    void refresh();

Q_SIGNALS:
    void changed();

private:
    void outdate();
    void read();
    Tally count(const QuickNavNode &node, int level);

    ProjectSession &m_session;
    LinkTargets m_targets;
    QuickNav m_nav;
    QString m_problem;
    QHash<QString, Tally> m_tallies; ///< by level and id
    bool m_isOutdated = true;
    bool m_isWatched = false;
};
