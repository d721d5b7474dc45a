#include "tools/build/BuildTools.h"

#include <QCoreApplication>

using namespace Qt::StringLiterals;

namespace {

struct ToolFacts
{
    const char *name;
    QLatin1StringView element, result;
};

constexpr std::array<ToolFacts, 4> facts{{
    {QT_TRANSLATE_NOOP("BuildTools", "Document to document links"), "DoctoDoc"_L1,
     "DocToDoc\\DocLinks.xml"_L1},
    {QT_TRANSLATE_NOOP("BuildTools", "Context settings"), "ContextSettings"_L1,
     "DynamicHelp\\Book_DynamicHelp.xml"_L1},
    {QT_TRANSLATE_NOOP("BuildTools", "Quick navigation"), "QuickNav"_L1,
     "QuickNav\\QuickNav.xml"_L1},
    {QT_TRANSLATE_NOOP("BuildTools", "Search words"), "SearchIndex"_L1,
     "Search_Words\\Search_Pages.xml"_L1},
}};

const ToolFacts &of(BuildTool tool)
{
    return facts[static_cast<size_t>(tool)];
}

} // namespace

QString nameOf(BuildTool tool)
{
    return QCoreApplication::translate("BuildTools", of(tool).name);
}

QLatin1StringView elementOf(BuildTool tool)
{
    return of(tool).element;
}

QLatin1StringView resultOf(BuildTool tool)
{
    return of(tool).result;
}

qint32 lightOf(ToolReport::Outcome outcome)
{
    switch (outcome) {
    case ToolReport::Outcome::Good:
        return Light::good;
    case ToolReport::Outcome::Warnings:
        return Light::warnings;
    case ToolReport::Outcome::Failed:
        return Light::failed;
    }
    return Light::failed;
}
