#pragma once

#include <QtWidgets>

#if QT_CONFIG(accessibility)
#include <QAccessible>
#endif

// What an author without a mouse or without eyes would stumble over in a window, as it stands now.

namespace audit {

inline QString described(const QWidget *widget)
{
    return QStringLiteral("%1 \"%2\" in %3")
        .arg(QString::fromLatin1(widget->metaObject()->className()), widget->objectName(),
             widget->parentWidget() ? widget->parentWidget()->objectName() : QString());
}

/// Reached by the Tab key now. Parts that a widget keeps to itself are not.
inline bool isReached(const QWidget *widget)
{
    return widget->isVisible() && widget->isEnabled() && (widget->focusPolicy() & Qt::TabFocus)
           && widget->focusProxy() == nullptr
           && qobject_cast<const QTabBar *>(widget->parentWidget()) == nullptr
           && !widget->objectName().startsWith(QStringLiteral("qt_"));
}

inline QWidgetList tabOrder(QWidget *window)
{
    QWidgetList order;
    QWidget *at = window;
    do {
        if (at != window && isReached(at) && at->window() == window)
            order.append(at);
        at = at->nextInFocusChain();
    } while (at != window);
    return order;
}

#if QT_CONFIG(accessibility)
/// From now on widgets have names.
inline void startReading()
{
    QAccessible::setActive(true);
}

inline QString nameOf(QWidget *widget)
{
    QAccessibleInterface *const spoken = QAccessible::queryAccessibleInterface(widget);
    return spoken ? spoken->text(QAccessible::Name) : QString();
}
#else
inline void startReading() {}

/// Names are checked where Qt knows them.
inline QString nameOf(QWidget *)
{
    return QStringLiteral("?");
}
#endif

/// The texts of a window whose "&" makes a letter work with Alt.
inline QList<std::pair<QString, const QWidget *>> lettered(const QWidget *window)
{
    QList<std::pair<QString, const QWidget *>> texts;
    for (const auto *button : window->findChildren<QAbstractButton *>())
        texts.append({button->text(), button});
    for (const auto *label : window->findChildren<QLabel *>()) {
        if (label->buddy() && label->textFormat() != Qt::PlainText)
            texts.append({label->text(), label});
    }
    for (const auto *box : window->findChildren<QGroupBox *>())
        texts.append({box->title(), box});
    for (const auto *tabs : window->findChildren<QTabBar *>()) {
        for (int i = 0; i < tabs->count(); ++i)
            texts.append({tabs->tabText(i), tabs});
    }
    for (const auto *bar : window->findChildren<QMenuBar *>()) {
        for (const QAction *menu : bar->actions())
            texts.append({menu->text(), bar});
    }
    texts.removeIf([](const auto &text) { return !text.second->isVisible(); });
    return texts;
}

inline QStringList namelessIn(QWidget *window)
{
    QStringList found;
    for (QWidget *const widget : tabOrder(window)) {
        if (nameOf(widget).trimmed().isEmpty())
            found.append(QStringLiteral("no name: ") + described(widget));
    }
    return found;
}

inline QStringList doubleLettersIn(const QWidget *window)
{
    QStringList found;
    QHash<QKeySequence, QString> taken;
    for (const auto &[text, widget] : lettered(window)) {
        const QKeySequence keys = QKeySequence::mnemonic(text);
        if (keys.isEmpty())
            continue;
        if (const QString other = taken.value(keys); !other.isEmpty())
            found.append(
                QStringLiteral("%1 twice: \"%2\" and \"%3\"").arg(keys.toString(), other, text));
        taken.insert(keys, text);
    }
    return found;
}

inline QRect placeIn(const QWidget *window, const QWidget *widget)
{
    return {widget->mapTo(window, QPoint()), widget->size()};
}

/// A part of the window that Tab leaves and comes back to later.
inline QStringList returnsIn(QWidget *window)
{
    QStringList found;
    const QWidgetList order = tabOrder(window);
    QSet<const QWidget *> left;
    for (qsizetype i = 1; i < order.size(); ++i) {
        const QWidget *const now = order.at(i);
        for (const QWidget *part = order.at(i - 1)->parentWidget(); part != window;
             part = part->parentWidget()) {
            if (!part->isAncestorOf(now))
                left.insert(part);
        }
        for (const QWidget *part = now->parentWidget(); part != window;
             part = part->parentWidget()) {
            if (left.contains(part))
                found.append(QStringLiteral("comes back: ") + described(now));
        }
    }
    return found;
}

/// Places where Tab goes back up or to the left. Once it has to: from the end to the beginning.
inline QStringList jumpsIn(QWidget *window)
{
    QStringList found;
    const QWidgetList order = tabOrder(window);
    for (qsizetype i = 0; i < order.size(); ++i) {
        const QWidget *const now = order.at(i);
        const QWidget *const next = order.at((i + 1) % order.size());
        const QRect from = placeIn(window, now), to = placeIn(window, next);
        const bool isAbove = to.bottom() <= from.top() && to.left() < from.right();
        const bool isLeft = to.right() <= from.left() && to.top() < from.bottom();
        if (isAbove || isLeft)
            found.append(
                QStringLiteral("jumps from %1 to %2").arg(described(now), described(next)));
    }
    return found.size() > 1 ? found : QStringList();
}

inline QStringList findingsIn(QWidget *window)
{
    return namelessIn(window) + doubleLettersIn(window) + returnsIn(window) + jumpsIn(window);
}

} // namespace audit
