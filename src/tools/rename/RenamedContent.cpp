#include "tools/rename/RenamedContent.h"

#include "platform/Paths.h"
#include "platform/QvError.h"
#include "platform/Xml.h"
#include "projectfiles/FileElements.h"
#include "startup/PageText.h"

using namespace Qt::StringLiterals;

namespace {

QString marker(const QString &project)
{
    return u"**"_s + project + u"**"_s;
}

bool isFile(const QString &path, QLatin1StringView file)
{
    return path.compare(file, Qt::CaseInsensitive) == 0;
}

// A page that cannot be read as text holds no marker that anybody could see.
bool isText(const PageText &page)
{
    return !page.damaged && !page.text.contains(QChar::Null);
}

/// A stored path "<project>\folder\page.htm" below the new project; nothing when it lies elsewhere.
std::optional<QString> carried(const QString &stored, const QString &from, const QString &to)
{
    const bool lies = stored.startsWith(from, Qt::CaseInsensitive) && stored.size() > from.size()
                      && (stored[from.size()] == u'\\' || stored[from.size()] == u'/');
    return lies ? std::optional(to + stored.sliced(from.size())) : std::nullopt;
}

} // namespace

RenamedContent::RenamedContent(QString oldName, QString newName, QString language,
                               PlatformAndVariation header)
    : m_old(std::move(oldName))
    , m_new(std::move(newName))
    , m_language(std::move(language))
    , m_header(std::move(header))
{
}

bool RenamedContent::isPage(const QString &path)
{
    return path.contains(".htm"_L1, Qt::CaseInsensitive);
}

QByteArray RenamedContent::of(const QString &path, const QByteArray &bytes) const
{
    if (isFile(path, ProjectFile::toc))
        return toc(path, bytes);
    if (isFile(path, ProjectFile::links))
        return links(path, bytes);
    // A book's file in a folder "Pumps.html" is a page, too, by its path.
    const bool isXml = path.endsWith(".xml"_L1, Qt::CaseInsensitive);
    const QByteArray keyed = isXml ? book(path, bytes) : bytes;
    return isPage(path) ? page(path, keyed) : keyed;
}

QByteArray RenamedContent::toc(const QString &path, const QByteArray &bytes) const
{
    const pugi::xml_document document = parseXml(bytes, path, "QV_Master");
    const pugi::xml_node root = document.document_element();
    const pugi::xml_node header = requiredChild(root, "QV", path);
    setChild(header, "QV_Platform", m_header.platform);
    setChild(header, "QV_Variation", m_header.variation);
    for (const pugi::xml_node &entry : requiredChild(root, "QV_Books", path).children("Book"))
        setChild(entry, "Book_Key", m_new);
    return xmlBytes(document);
}

// Other files of ours and of anybody else end in ".xml" too; they stay as they are.
QByteArray RenamedContent::book(const QString &path, const QByteArray &bytes) const
{
    const auto leave = [](const QvError &) {};
    const QByteArray renamed = trap(leave, [&] {
        const pugi::xml_document document = parseXml(bytes, path, "Book_Master");
        const pugi::xml_node header = document.document_element().child("Book");
        if (!header.child("Book_Key"))
            return bytes;
        setChild(header, "Book_Key", m_new);
        setChild(header, "Book_Path", u"Docs\\"_s + m_new + u'\\' + parentFolder(path));
        return xmlBytes(document);
    });
    return renamed.isEmpty() ? bytes : renamed;
}

bool RenamedContent::hasMarker(const QByteArray &bytes) const
{
    // Most pages are passed over without being decoded: two stars, in 8 or in 16 bits each.
    if (!bytes.contains("**") && !bytes.contains(QByteArrayView("*\0*", 3)))
        return false;
    const PageText page = decodePage(bytes, m_language);
    return isText(page) && page.text.contains(marker(m_old));
}

QByteArray RenamedContent::page(const QString &path, const QByteArray &bytes) const
{
    PageText page = decodePage(bytes, m_language);
    if (!isText(page) || !page.text.contains(marker(m_old)))
        return bytes;
    if (encodePage(page.text, page.encoding) != bytes)
        throw QvError(PathFileAccess, {},
                      u"The page %1 holds the project's name, but cannot be written back as it is: "
                      "open it and save it as UTF-8 first."_s.arg(path));
    const auto explain = [&](const QvError &error) {
        throw QvError(error.number(), {},
                      u"The page %1 cannot hold the new name in its encoding. %2. Save it as UTF-8 "
                      "first."_s.arg(path, error.description()));
    };
    page.text.replace(marker(m_old), marker(m_new));
    return trap(explain, [&] { return encodePage(page.text, page.encoding); });
}

QByteArray RenamedContent::links(const QString &path, const QByteArray &bytes, int *changed) const
{
    const pugi::xml_document document = parseXml(bytes, path, "LINKS");
    int count = 0;
    for (const pugi::xpath_node &stored :
         document.select_nodes("LINKS/IBD/ID/LinkIDSourceFile | LINKS/IBS/USER/FilePath")) {
        if (const auto now = carried(textOf(stored.node()).trimmed(), m_old, m_new)) {
            setText(stored.node(), *now);
            ++count;
        }
    }
    if (changed != nullptr)
        *changed = count;
    return count == 0 ? bytes : xmlBytes(document);
}
