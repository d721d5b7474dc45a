#include "projectfiles/FileElements.h"

#include "platform/QvError.h"

#include <algorithm>
#include <string_view>

using namespace Qt::StringLiterals;

namespace {

constexpr long long highestId = 1'000'000'000; // no file of ours comes near it

} // namespace

pugi::xml_node requiredChild(const pugi::xml_node &parent, const char *name, const QString &path)
{
    const pugi::xml_node child = parent.child(name);
    if (!child)
        throw QvError(
            PathFileAccess, {},
            u"%1 cannot be read: the element %2 is missing"_s.arg(path, QString::fromLatin1(name)));
    return child;
}

pugi::xml_node setChild(pugi::xml_node parent, const char *name, const QString &text)
{
    const pugi::xml_node child = parent.child(name);
    if (!child)
        return appendText(parent, name, text);
    setText(child, text);
    return child;
}

QStringList textsOf(const pugi::xml_node &parent, const char *name)
{
    QStringList texts;
    for (const pugi::xml_node &child : parent.children(name))
        texts.append(textOf(child));
    return texts;
}

RewrittenList::RewrittenList(const pugi::xml_node &list, const char *name, const Key &key)
    : m_list(list)
    , m_name(name)
{
    // Backwards: of those with one key, the one put in last is taken first.
    for (pugi::xml_node child = list.last_child(); child; child = child.previous_sibling()) {
        if (child.name() == std::string_view(name))
            m_old.insert(key(child), child);
    }
}

pugi::xml_node RewrittenList::place(const QString &key)
{
    const pugi::xml_node old = m_old.take(key);
    return old ? m_list.append_move(old) : m_list.append_child(m_name);
}

void RewrittenList::removeRest()
{
    for (const pugi::xml_node &child : std::as_const(m_old))
        m_list.remove_child(child);
    m_old.clear();
}

Ids::Ids(QChar letter, const pugi::xml_node &list, const char *attribute)
    : m_letter(letter)
    , m_attribute(attribute)
    , m_next(std::clamp(list.attribute(attribute).as_llong(1), 1LL, highestId))
{
}

QString Ids::take(const QString &wanted)
{
    QString id = wanted;
    while (id.isEmpty() || m_taken.contains(id))
        id = m_letter + QString::number(m_next++).rightJustified(4, u'0');
    m_taken.insert(id);
    return id;
}

void Ids::store(pugi::xml_node list) const
{
    setAttribute(list, m_attribute, QString::number(m_next));
}

void Ids::reserve(const QString &id)
{
    if (!id.startsWith(m_letter))
        return;
    const qint64 number = QStringView(id).sliced(1).toLongLong(); // 0 when it is none
    if (number < highestId)
        m_next = std::max(m_next, number + 1);
}

void giveIds(const pugi::xml_node &list, const char *name, QChar letter)
{
    Ids ids(letter, list);
    for (const pugi::xml_node &child : list.children(name))
        ids.reserve(idOf(child));
    for (const pugi::xml_node &child : list.children(name))
        setAttribute(child, "ID", ids.take(idOf(child)));
}

QString idOf(const pugi::xml_node &element)
{
    return valueOf(element.attribute("ID"));
}
