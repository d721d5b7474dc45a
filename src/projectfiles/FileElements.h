#pragma once

#include "platform/Xml.h"

#include <QMultiHash>
#include <QSet>
#include <QString>

#include <functional>

#include <pugixml.hpp>

// What the project's files have in common: elements that must be there, and ids.

/// The child element `name`. Raises 75 naming the file and the element when it is missing.
pugi::xml_node requiredChild(const pugi::xml_node &parent, const char *name, const QString &path);

/// Sets the text of a child element, which is appended when it is missing.
pugi::xml_node setChild(pugi::xml_node parent, const char *name, const QString &text);

/// The texts of the child elements named `name`.
QStringList textsOf(const pugi::xml_node &parent, const char *name);

/// A list element that is rewritten: its children are found again by a key, so that they keep what
/// is not known here, and stand in the order in which they are asked for.
class RewrittenList final
{
public:
    using Key = std::function<QString(const pugi::xml_node &)>;
    RewrittenList(const pugi::xml_node &list, const char *name, const Key &key);

    /// The child of that key, or a new one, moved to the end of the list.
    pugi::xml_node place(const QString &key);
    /// Removes the children that nobody asked for.
    void removeRest();

private:
    pugi::xml_node m_list;
    const char *m_name;
    QMultiHash<QString, pugi::xml_node> m_old;
};

/// Gives the ids of one file, such as "P0001". The list element remembers the next number in its
/// attribute NextID (or the one named), so that the id of something deleted is never given again.
class Ids final
{
public:
    Ids(QChar letter, const pugi::xml_node &list, const char *attribute = "NextID");

    /// Keeps an id that is in use from being given. Call it for all of them before the first
    /// `take`.
    void reserve(const QString &id);
    /// `wanted` itself, or a new id when it is empty or was taken before.
    QString take(const QString &wanted);
    /// Stores the next number in the list element.
    void store(pugi::xml_node list) const;

private:
    QChar m_letter;
    const char *m_attribute;
    qint64 m_next = 1;
    QSet<QString> m_taken;
};

/// Children that have no id, or one that stands before them already, get one: the same whenever the
/// file is read. Files made by hand need it.
void giveIds(const pugi::xml_node &list, const char *name, QChar letter);

/// The attribute ID of an element.
QString idOf(const pugi::xml_node &element);

/// Rewrites a list of elements that have ids: `write(element, item)` fills the element of each
/// item, found again by the item's `id`; a new item gets an id.
template <typename Item, typename Write>
void rewriteList(const pugi::xml_node &list, const char *name, QChar letter,
                 const QList<Item> &items, const Write &write)
{
    giveIds(list, name, letter);
    Ids ids(letter, list);
    for (const pugi::xml_node &old : list.children(name))
        ids.reserve(idOf(old));
    for (const Item &item : items)
        ids.reserve(item.id);
    RewrittenList rewritten(list, name, idOf);
    for (const Item &item : items) {
        const QString id = ids.take(item.id);
        const pugi::xml_node element = rewritten.place(id);
        setAttribute(element, "ID", id);
        write(element, item);
    }
    rewritten.removeRest();
    ids.store(list);
}
