#include "reports/LinkReport.h"

#include "components/Components.h"
#include "components/RegistryAccess.h"
#include "components/ServerProducts.h"
#include "reports/LinkListing.h"

LinkReport::LinkReport(Program &program)
    : LinkReport(program, listingThreads())
{
}

LinkReport::LinkReport(Program &program, int threads)
    : m_program(program)
    , m_threads(threads)
{
}

LinkEntries LinkReport::GetIBD_Details(const Progress &progress)
{
    return listing().targets(progress);
}

LinkEntries LinkReport::GetIBS_Details(const Progress &progress)
{
    return listing().references(progress);
}

bool LinkReport::CheckLinkIDExist(const QString &LinkID)
{
    const XmlCharacters &characters = m_program.components.xmlCharacters;
    return listing().leadsToPage(characters.mstrReplaceSpecialCharecters(LinkID.trimmed()));
}

LinkListing LinkReport::listing() const
{
    const Components &components = m_program.components;
    return {m_program.files, components.xmlCharacters, components.registryAccess.GetQVServer(),
            components.serverProducts.GetAvailableProducts(), m_threads};
}
