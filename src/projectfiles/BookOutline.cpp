#include "projectfiles/BookOutline.h"

#include "platform/QvError.h"
#include "platform/Xml.h"
#include "projectfiles/FileElements.h"

#include <QHash>

#include <string_view>

using namespace Qt::StringLiterals;

namespace {

QList<ContextId> readContextIds(const pugi::xml_node &page)
{
    QList<ContextId> ids;
    for (const pugi::xml_node &id : page.children("Page_Context"))
        ids.append({valueOf(id.attribute("ID")), textOf(id)});
    return ids;
}

QList<BookPage> readPages(const pugi::xml_node &parent, const QString &path, int level)
{
    QList<BookPage> pages;
    for (const pugi::xml_node &page : parent.children("Page")) {
        if (level > deepestOutline)
            throw QvError(
                PathFileAccess, {},
                u"%1 cannot be read: its pages are nested more than %2 deep"_s.arg(path).arg(
                    deepestOutline));
        pages.append({.id = valueOf(page.attribute("ID")),
                      .title = textOf(page.child("Page_Title")),
                      .file = textOf(page.child("Page_File")),
                      .keyWords = textsOf(page.child("Page_KeyWords"), "KeyWord"),
                      .pages = readPages(page, path, level + 1),
                      .contextIds = readContextIds(page),
                      .linkIds = textsOf(page, "Page_LinkID")});
    }
    return pages;
}

bool isKept(const pugi::xml_node &child)
{
    const std::string_view name = child.name();
    return child.type() == pugi::node_element && name != "Page_Title" && name != "Page_File"
           && name != "Page_Context" && name != "Page_KeyWords" && name != "Page_LinkID"
           && name != "Page";
}

/// Builds a new outline beside the old one, which it takes what it does not know from.
class OutlineWriter final
{
public:
    explicit OutlineWriter(const pugi::xml_node &oldOutline);
    void write(pugi::xml_node parent, const QList<BookPage> &pages, int level = 1);
    [[nodiscard]] const Ids &ids() const { return m_ids; }
    void reserve(const QList<BookPage> &pages);

private:
    void collect(const pugi::xml_node &parent);
    void writePage(pugi::xml_node element, const BookPage &page);

    Ids m_ids;
    QHash<QString, pugi::xml_node> m_old;
};

OutlineWriter::OutlineWriter(const pugi::xml_node &oldOutline)
    : m_ids(u'P', oldOutline)
{
    collect(oldOutline);
}

void OutlineWriter::collect(const pugi::xml_node &parent)
{
    for (const pugi::xml_node &page : parent.children("Page")) {
        const QString id = valueOf(page.attribute("ID"));
        m_ids.reserve(id);
        if (!m_old.contains(id))
            m_old.insert(id, page);
        collect(page);
    }
}

void OutlineWriter::reserve(const QList<BookPage> &pages)
{
    for (const BookPage &page : pages) {
        m_ids.reserve(page.id);
        reserve(page.pages);
    }
}

void OutlineWriter::write(pugi::xml_node parent, const QList<BookPage> &pages, int level)
{
    if (level > deepestOutline && !pages.isEmpty())
        throw QvError(InvalidCall, {},
                      u"Pages can be nested at most %1 deep."_s.arg(deepestOutline));
    for (const BookPage &page : pages) {
        const pugi::xml_node element = parent.append_child("Page");
        writePage(element, page);
        write(element, page.pages, level + 1);
    }
}

void OutlineWriter::writePage(pugi::xml_node element, const BookPage &page)
{
    const QString id = m_ids.take(page.id);
    setAttribute(element, "ID", id);
    appendText(element, "Page_Title", page.title);
    appendText(element, "Page_File", page.file);
    const pugi::xml_node old = id == page.id ? m_old.value(id) : pugi::xml_node();
    for (const pugi::xml_attribute &attribute : old.attributes()) {
        if (attribute.name() != std::string_view("ID"))
            element.append_copy(attribute);
    }
    for (const pugi::xml_node &child : old.children()) {
        if (isKept(child))
            element.append_copy(child);
    }
    for (const ContextId &context : page.contextIds)
        setAttribute(appendText(element, "Page_Context", context.number), "ID", context.name);
    for (const QString &linkId : page.linkIds)
        appendText(element, "Page_LinkID", linkId);
    if (page.keyWords.isEmpty())
        return;
    const pugi::xml_node keyWords = element.append_child("Page_KeyWords");
    for (const QString &keyWord : page.keyWords)
        appendText(keyWords, "KeyWord", keyWord);
}

} // namespace

QList<BookPage> readOutline(const pugi::xml_node &bookPages, const QString &path)
{
    return readPages(bookPages, path, 1);
}

void writeOutline(pugi::xml_node master, const QList<BookPage> &pages)
{
    pugi::xml_node old = master.child("Book_Pages");
    if (!old)
        old = master.insert_child_after("Book_Pages", master.child("Book"));
    OutlineWriter writer(old);
    writer.reserve(pages);
    const pugi::xml_node outline = master.insert_child_after("Book_Pages", old);
    for (const pugi::xml_attribute &attribute : old.attributes())
        pugi::xml_node(outline).append_copy(attribute);
    writer.write(outline, pages);
    writer.ids().store(outline);
    master.remove_child(old);
}

QList<BookPage> flattened(const QList<BookPage> &pages)
{
    QList<BookPage> all;
    for (const BookPage &page : pages) {
        all.append(page);
        all.append(flattened(page.pages));
    }
    return all;
}
