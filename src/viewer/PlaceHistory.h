#pragma once

#include "viewer/ViewerPlace.h"

#include <QList>

/// The places a reader has been to, as Back and Forward know them.
class PlaceHistory final
{
public:
    struct Visit
    {
        ViewerPlace place;
        int scroll = 0; ///< how far down the page was when it was left
    };

    /// Goes to a place; what lay ahead is forgotten. The place one is at already is no new visit.
    void visit(const ViewerPlace &place);
    /// Notes how far down the present page is, before it is left.
    void note(int scroll);
    [[nodiscard]] bool canGo(int steps) const;
    /// -1 is back, 1 forward; only where `canGo` says so.
    const Visit &go(int steps);
    [[nodiscard]] ViewerPlace here() const;

private:
    QList<Visit> m_visits;
    qsizetype m_at = -1;
};
