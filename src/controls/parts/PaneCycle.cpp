#include "controls/parts/PaneCycle.h"

#include <QShortcut>
#include <QSplitter>

#include <algorithm>

namespace {

bool isPane(const QWidget *part)
{
    const auto *splitter = qobject_cast<const QSplitter *>(part->parentWidget());
    return splitter != nullptr && part->isVisible() && part->findChildren<QSplitter *>().isEmpty()
           && qobject_cast<const QSplitter *>(part) == nullptr;
}

bool takesFocus(const QWidget *widget)
{
    return widget->isVisible() && widget->isEnabled() && (widget->focusPolicy() & Qt::TabFocus);
}

/// The first widget of a pane that the Tab key reaches.
QWidget *entryOf(QWidget *pane)
{
    QWidget *at = pane;
    do {
        if (takesFocus(at) && (at == pane || pane->isAncestorOf(at)))
            return at;
        at = at->nextInFocusChain();
    } while (at != pane);
    return nullptr;
}

QList<QWidget *> panesOf(QWidget *window)
{
    QList<QWidget *> panes;
    for (QWidget *const part : window->findChildren<QWidget *>()) {
        if (isPane(part) && entryOf(part) != nullptr)
            panes.append(part);
    }
    const auto place = [window](const QWidget *pane) {
        const QPoint at = pane->mapTo(window, QPoint());
        return std::pair(at.x(), at.y());
    };
    std::ranges::stable_sort(panes, {}, place);
    return panes;
}

} // namespace

void goToNextPane(QWidget *window, int step)
{
    const QList<QWidget *> panes = panesOf(window);
    if (panes.isEmpty())
        return;
    QWidget *const focused = window->focusWidget();
    const auto current = std::find_if(panes.cbegin(), panes.cend(), [&](const QWidget *pane) {
        return pane == focused || pane->isAncestorOf(focused);
    });
    if (current != panes.cend())
        (*current)->setProperty("lastFocus", QVariant::fromValue(focused));
    const qsizetype count = panes.size();
    const qsizetype at = current == panes.cend() ? (step > 0 ? -1 : 0) : current - panes.cbegin();
    QWidget *const next = panes.at((at + step + count) % count);
    auto *const last = next->property("lastFocus").value<QWidget *>();
    const bool stays =
        last != nullptr && next->findChildren<QWidget *>().contains(last) && takesFocus(last);
    (stays ? last : entryOf(next))->setFocus(Qt::OtherFocusReason);
}

void addPaneKeys(QWidget *window)
{
    const auto add = [window](const QKeySequence &keys, int step) {
        QObject::connect(new QShortcut(keys, window), &QShortcut::activated, window,
                         [window, step] { goToNextPane(window, step); });
    };
    add(Qt::Key_F6, 1);
    add(Qt::SHIFT | Qt::Key_F6, -1);
}
