#include "indexmanager/WhoLinks.h"

#include "indexmanager/SetScan.h"
#include "platform/Paths.h"
#include "platform/Xml.h"
#include "tools/PageIndex.h"
#include "tools/build/BuildInput.h"
#include "tools/build/BuildTools.h"
#include "tools/rename/RenameSurvey.h"

#include <QCoreApplication>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

QString tr(const char *text)
{
    return QCoreApplication::translate("WhoLinks", text);
}

/// What the list of the linking tool says of a link that is not good.
QString problemOf(const QString &state)
{
    if (state == "PlaceMissing"_L1)
        return tr("The page has no such place.");
    if (state == "OtherLetterCase"_L1)
        return tr("Letter case differs.");
    if (state == "SeveralSpellings"_L1)
        return tr("Several files differ only in letter case.");
    if (state == "IsFolder"_L1)
        return tr("It leads to a folder.");
    return state.isEmpty() ? QString() : tr("The page is missing.");
}

class Search final
{
public:
    Search(Program &program, const IdentifierIndex &index, const LinkedPlace &place)
        : m_program(program)
        , m_index(index)
        , m_place(place)
    {
    }

    WhoLinks run(const Progress &progress)
    {
        if (!m_place.isSet())
            takeOwnSet(progress);
        m_found.links += identifierLinksTo(m_index, m_place);
        return std::move(m_found);
    }

private:
    void takeOwnSet(const Progress &progress)
    {
        FileSystem &files = m_program.files;
        const QString folder =
            existingProjectFolder(files, m_program.session.serverPath, m_place.set);
        const QString list = folder + resultOf(BuildTool::DocToDoc);
        const SetScan scan =
            scanStateOf(files, m_program.session.serverPath, m_place.set, progress);
        if (scan.state == ScanState::Current && files.exists(list))
            takeList(loadXml(files, list, "QV_DocLinks"));
        else
            takePages(folder, progress);
    }

    void takeList(const pugi::xml_document &list)
    {
        for (const pugi::xml_node &page : list.child("QV_DocLinks").children("Page")) {
            const QString file = textOf(page.child("Page_File"));
            for (const pugi::xml_node &link : page.children("Page_Link"))
                take(file, textOf(link), problemOf(valueOf(link.attribute("State"))));
        }
    }

    void takePages(const QString &folder, const Progress &progress)
    {
        m_found.pagesWereRead = true;
        Session session = m_program.session;
        const QString language = languageOf(m_program, m_place.set);
        const BuildInput input = readBuildInput(session, m_program.files, m_place.set, language);
        PageIndex pages;
        pages.update(m_program.files, folder, input.pageFolders(), language, progress);
        m_found.unread = pages.unreadable();
        for (const QString &target : pages.targets()) {
            for (const PageUse &use : pages.usesOf(target))
                takeUse(pages, use);
        }
        std::ranges::stable_sort(m_found.links, {},
                                 [](const LinkingPage &one) { return one.page.toCaseFolded(); });
    }

    void takeUse(const PageIndex &pages, const PageUse &use)
    {
        const IndexedLink &link = pages.page(use.page)->links[use.link];
        const QString anchor = link.anchor.isEmpty() ? QString() : u'#' + link.anchor;
        if (link.kind == PageReference::Kind::Link)
            take(use.page, link.target + anchor, pages.problemOf(link));
    }

    void take(const QString &page, const QString &leadsTo, const QString &problem)
    {
        if (m_place.holds(m_place.set, leadsTo) && !m_place.holds(m_place.set, page))
            m_found.links.append({m_place.set, page, leadsTo, {}, problem});
    }

    Program &m_program;
    const IdentifierIndex &m_index;
    const LinkedPlace &m_place;
    WhoLinks m_found;
};

} // namespace

WhoLinks whoLinksTo(Program &program, const IdentifierIndex &index, const LinkedPlace &place,
                    const Progress &progress)
{
    return Search(program, index, place).run(progress);
}
