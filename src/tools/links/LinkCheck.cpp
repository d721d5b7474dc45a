#include "tools/links/LinkCheck.h"

#include "tools/build/PageAnchors.h"
#include "tools/links/LinkIdentifiers.h"

#include <QSet>

#include <limits>

namespace {

constexpr quint32 noFile = std::numeric_limits<quint32>::max();

/// What lies at a target of references.
struct TargetPlace
{
    RefState state = RefState::Good;
    quint32 file = noFile; ///< place in the listing
    bool hasAnchors = false;
};

/// A link to a folder leads to its index page.
TargetPlace indexPage(const ProjectListing &listing, const std::string &folder)
{
    const std::string path = folder.empty() ? folder : folder + '/';
    TargetPlace place{RefState::IsFolder};
    for (const char *const name : {"index.html", "index.htm"}) {
        const ProjectListing::Found found = listing.find(path + name);
        if (found.match == ProjectListing::Match::Exact)
            return {RefState::Good, found.file};
        if (found.match == ProjectListing::Match::OtherCase)
            place = {RefState::OtherLetterCase, found.file};
    }
    return place;
}

TargetPlace placeOf(const ProjectListing &listing, const std::string &target)
{
    const ProjectListing::Found found = listing.find(target);
    switch (found.match) {
    case ProjectListing::Match::Exact:
        return {RefState::Good, found.file};
    case ProjectListing::Match::OtherCase:
        return {RefState::OtherLetterCase, found.file};
    case ProjectListing::Match::Ambiguous:
        return {RefState::SeveralSpellings};
    case ProjectListing::Match::Folder:
        return indexPage(listing, target);
    case ProjectListing::Match::Missing:
        break;
    }
    return {RefState::FileMissing};
}

/// Judges references; targets are looked up once, however many references mean them.
class Judge final
{
public:
    Judge(const BuildInput &input, const ScannedPages &pages, const PageAnchors &anchors)
        : m_anchors(anchors)
    {
        m_places.reserve(pages.targets().size());
        for (const std::string &target : pages.targets()) {
            TargetPlace place = placeOf(pages.listing(), target);
            place.hasAnchors = place.file != noFile && anchors.page(place.file) != nullptr;
            m_places.push_back(place);
        }
        for (const PublishedTarget &target : publishedTargets(input, pages))
            m_identifiers.insert(target.identifier);
    }

    [[nodiscard]] RefState stateOf(const PageFacts &facts, const PageRef &ref) const
    {
        switch (ref.place) {
        case RefPlace::ThisPage:
        case RefPlace::Project:
            return stateIn(m_places[ref.target], facts, ref);
        case RefPlace::OutsideProject:
            return RefState::LeavesProject;
        case RefPlace::Absolute:
            return RefState::Absolute;
        case RefPlace::Elsewhere:
            return RefState::Elsewhere;
        case RefPlace::LinkID:
            break;
        }
        return m_identifiers.contains(linkIdentifier(facts.of(ref.anchor)))
                   ? RefState::Good
                   : RefState::UnknownLinkID;
    }

    /// The file that a reference uses; `noFile` when it is none, or the page itself.
    [[nodiscard]] quint32 fileOf(const PageRef &ref) const
    {
        return ref.place == RefPlace::Project ? m_places[ref.target].file : noFile;
    }

private:
    /// Only for what readers go to: elsewhere "#" has other meanings, as in url(#default#VML).
    [[nodiscard]] RefState stateIn(const TargetPlace &place, const PageFacts &facts,
                                   const PageRef &ref) const
    {
        const bool isAsked = place.state == RefState::Good && place.hasAnchors
                             && ref.anchor.length > 0 && ref.kind == PageReference::Kind::Link;
        return !isAsked || hasAnchor(place.file, facts.of(ref.anchor)) ? place.state
                                                                       : RefState::PlaceMissing;
    }

    /// What begins with ":~:" asks for a passage to be highlighted and is not part of the name.
    [[nodiscard]] bool hasAnchor(quint32 file, std::string_view anchor) const
    {
        if (m_anchors.has(file, anchor))
            return true;
        const size_t passage = anchor.find(":~:");
        return passage != std::string_view::npos && m_anchors.has(file, anchor.substr(0, passage));
    }

    const PageAnchors &m_anchors;
    std::vector<TargetPlace> m_places; ///< by target
    QSet<QString> m_identifiers;
};

} // namespace

LinkCheck::LinkCheck(const BuildInput &input, const ScannedPages &pages, const PageAnchors &anchors,
                     const Progress &progress)
    : m_used(pages.listing().files().size())
{
    const Judge judge(input, pages, anchors);
    const auto count = static_cast<quint32>(pages.pages().size());
    for (quint32 number = 0; number < count; ++number) {
        progress.step(static_cast<int>(number), static_cast<int>(count));
        const PageFacts &facts = pages.pages()[number].facts;
        for (quint32 place = 0; place < facts.refs.size(); ++place) {
            const PageRef &ref = facts.refs[place];
            const RefState state = judge.stateOf(facts, ref);
            if (state == RefState::Elsewhere)
                continue;
            ++m_count;
            if (const quint32 file = judge.fileOf(ref); file != noFile)
                m_used[file] = true;
            if (state != RefState::Good)
                m_bad.push_back({number, place, state});
        }
    }
}
