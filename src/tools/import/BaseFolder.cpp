#include "tools/import/BaseFolder.h"

#include "platform/Paths.h"

std::optional<QString> baseFolder(const QString &page, QStringView text, const HtmlFacts &facts)
{
    if (!facts.hasBase)
        return parentFolder(page);
    const PageTarget base = targetOf(text.sliced(facts.base.start, facts.base.length));
    if (base.place == PageTarget::Place::SamePage)
        return parentFolder(page);
    if (base.place != PageTarget::Place::Relative)
        return std::nullopt;
    const QString path = base.path.first(base.path.lastIndexOf(u'/') + 1);
    const auto folder = joined(parentFolder(page), path);
    if (!folder)
        return std::nullopt;
    return folder->isEmpty() ? QString() : withBackslash(*folder);
}
