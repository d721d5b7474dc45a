#include "tools/import/ImportPlan.h"

namespace {

constexpr qint64 largestMade = 16LL * 1024 * 1024;

bool mayBeTaken(const ImportItem &item)
{
    return item.included && item.refusal.isEmpty() && item.action != ImportAction::Skip;
}

/// Marks what an item that is taken uses, and what that uses in turn. Links to other pages take
/// nothing along: a page comes when the author checked it.
void markUsed(const ImportPlan &plan, int index, QList<bool> &taken)
{
    for (const int used : plan.items[index].uses) {
        const ImportItem &item = plan.items[used];
        if (taken[used] || item.isPage() || !mayBeTaken(item))
            continue;
        taken[used] = true;
        markUsed(plan, used, taken);
    }
}

} // namespace

bool isTooLarge(const ImportItem &item)
{
    return item.isMade() && item.size > largestMade;
}

QList<bool> takenItems(const ImportPlan &plan)
{
    QList<bool> taken(plan.items.size(), false);
    for (int i = 0; i < plan.items.size(); ++i) {
        if (plan.items[i].isPage() && mayBeTaken(plan.items[i]))
            taken[i] = true;
    }
    for (int i = 0; i < plan.items.size() && plan.items[i].isPage(); ++i) {
        if (taken[i])
            markUsed(plan, i, taken);
    }
    return taken;
}

ImportTotals totalsOf(const ImportPlan &plan)
{
    ImportTotals totals;
    const QList<bool> taken = takenItems(plan);
    for (int i = 0; i < plan.items.size(); ++i) {
        const ImportItem &item = plan.items[i];
        if (!taken[i])
            continue;
        ++(item.isPage() ? totals.pages : totals.files);
        totals.conflicts += item.actions.size() > 1 ? 1 : 0;
        totals.bytes += item.action == ImportAction::KeepSame ? 0 : item.size;
    }
    return totals;
}
