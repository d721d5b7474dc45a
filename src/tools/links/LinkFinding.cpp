#include "tools/links/LinkCheck.h"

#include <QCoreApplication>

using namespace Qt::StringLiterals;

namespace {

QString tr(const char *text)
{
    return QCoreApplication::translate("LinkFinding", text);
}

QString text(std::string_view utf8)
{
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

Severity severityOf(RefState state)
{
    switch (state) {
    case RefState::FileMissing:
    case RefState::SeveralSpellings:
        return Severity::Error;
    case RefState::UnknownLinkID:
        return Severity::Note; // another project may publish it
    default:
        return Severity::Warning;
    }
}

/// How the file is spelled that a reference means in other letter case; it may be the index page of
/// a folder.
QString spelled(const ProjectListing &listing, const QString &target)
{
    for (const QLatin1StringView ending : {""_L1, "\\index.html"_L1, "\\index.htm"_L1}) {
        if (const QString file = listing.spelled(target + ending); !file.isEmpty())
            return file;
    }
    return target;
}

/// What it leads to, in the product's form; what the page wrote where that is nothing here.
QString leadsTo(const ScannedPages &pages, const PageFacts &facts, const PageRef &ref)
{
    if (ref.place == RefPlace::LinkID)
        return text(facts.of(ref.anchor));
    if (ref.place != RefPlace::Project && ref.place != RefPlace::ThisPage)
        return text(facts.of(ref.written));
    const QString target = ProjectListing::shown(pages.targets()[ref.target]);
    return ref.anchor.length == 0 ? target : target + u'#' + text(facts.of(ref.anchor));
}

QString wordsFor(const BuildInput &input, const ScannedPages &pages, const PageFacts &facts,
                 const PageRef &ref, RefState state)
{
    const bool hasTarget = ref.place == RefPlace::Project || ref.place == RefPlace::ThisPage;
    const std::string &path = hasTarget ? pages.targets()[ref.target] : std::string();
    const QString target = path.empty() ? input.project : ProjectListing::shown(path);
    switch (state) {
    case RefState::FileMissing:
        return tr("There is no file %1.").arg(target);
    case RefState::IsFolder:
        return tr("%1 is a folder without an index page (index.html or index.htm).").arg(target);
    case RefState::OtherLetterCase:
        return tr("The link is spelled %1, the file %2. Where letter case counts it is not found.")
            .arg(target, spelled(pages.listing(), target));
    case RefState::SeveralSpellings:
        return tr("Several files are called %1 in other letter case. Spell one of them.")
            .arg(target);
    case RefState::PlaceMissing:
        return tr("%1 has no place #%2.").arg(target, text(facts.of(ref.anchor)));
    case RefState::LeavesProject:
        return tr("%1 leads out of the project.").arg(text(facts.of(ref.written)));
    case RefState::Absolute:
        return tr("%1 begins at the root of a disk or server. Write it relative to the page.")
            .arg(text(facts.of(ref.written)));
    case RefState::UnknownLinkID:
        return tr("No page of this project publishes the identifier %1. The link report shows "
                  "whether another project does.")
            .arg(text(facts.of(ref.anchor)));
    case RefState::Good:
    case RefState::Elsewhere:
        break;
    }
    return {};
}

} // namespace

Finding findingOf(const BuildInput &input, const ScannedPages &pages, const BadRef &bad)
{
    const std::array codes{""_L1,       "LINK01"_L1, "LINK02"_L1, "LINK03"_L1, "LINK04"_L1,
                           "LINK05"_L1, "LINK06"_L1, "LINK07"_L1, ""_L1,       "LINK08"_L1};
    const ScannedPage &page = pages.pages()[bad.page];
    const PageRef &ref = page.facts.refs[bad.ref];
    return {.code = codes[static_cast<size_t>(bad.state)],
            .severity = severityOf(bad.state),
            .file = ProjectListing::shown(pages.pathOf(page)),
            .line = static_cast<int>(ref.line),
            .text = wordsFor(input, pages, page.facts, ref, bad.state),
            .subject = leadsTo(pages, page.facts, ref)};
}
