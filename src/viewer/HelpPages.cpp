#include "viewer/HelpPages.h"

#include "startup/PageText.h"
#include "tools/html/HtmlScan.h"

#include <algorithm>

using namespace Qt::StringLiterals;

HelpPages::HelpPages(FileSystem &files, QString folder)
    : m_files(files)
    , m_folder(std::move(folder))
{
}

const QList<HelpPage> &HelpPages::pages()
{
    if (!m_pages.isEmpty() || m_folder.isEmpty())
        return m_pages;
    const QString text = textOf(start);
    const HtmlFacts facts = scanHtml(text);
    QList<HelpPage> found{{facts.title, start}};
    for (const PageReference &reference : facts.references) {
        const PageTarget target =
            targetOf(QStringView(text).sliced(reference.start, reference.length));
        const bool known = std::any_of(found.cbegin(), found.cend(), [&](const HelpPage &page) {
            return page.file == target.path;
        });
        if (reference.kind == PageReference::Kind::Link
            && target.place == PageTarget::Place::Relative && !known)
            found.append({scanHtml(textOf(target.path)).title, target.path});
    }
    m_pages = std::move(found);
    return m_pages;
}

QString HelpPages::pageFor(const QString &topic)
{
    const QString title = topic.section(u'@', -1).trimmed();
    if (title.isEmpty())
        return start;
    for (const HelpPage &page : pages()) {
        if (page.title.compare(title, Qt::CaseInsensitive) == 0)
            return page.file;
    }
    return start;
}

QString HelpPages::textOf(const QString &file) const
{
    return decodePage(m_files.readFile(m_folder + file), u"ENU"_s).text;
}
