#include "tools/build/ReferenceResolver.h"

#include "platform/Paths.h"
#include "tools/PageIndexReader.h"
#include "tools/build/ProjectListing.h"

#include <QUrl>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

QString text(std::string_view utf8)
{
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

bool isLetter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool maybeInScheme(char c)
{
    return isLetter(c) || (c >= '0' && c <= '9') || c == '+' || c == '-' || c == '.';
}

/// Where the scheme ends ("http:"); 0 when there is none.
size_t schemeLength(std::string_view address)
{
    if (address.empty() || !isLetter(address[0]))
        return 0;
    size_t at = 1;
    while (at < address.size() && maybeInScheme(address[at]))
        ++at;
    return at < address.size() && address[at] == ':' ? at + 1 : 0;
}

bool isLinkId(std::string_view scheme)
{
    return text(scheme).compare("qvlink:"_L1, Qt::CaseInsensitive) == 0;
}

/// Nothing in it is decoded or trimmed by anyone.
bool isPlain(std::string_view anchor)
{
    return std::all_of(anchor.begin(), anchor.end(),
                       [](char c) { return c > ' ' && c < 0x7F && c != '%'; });
}

RefPlace outside(PageTarget::Place place)
{
    switch (place) {
    case PageTarget::Place::Absolute:
        return RefPlace::Absolute;
    case PageTarget::Place::Elsewhere:
        return RefPlace::Elsewhere;
    default:
        return RefPlace::OutsideProject;
    }
}

} // namespace

ReferenceResolver::ReferenceResolver(QString project, TargetTable &targets)
    : m_project(std::move(project))
    , m_targets(targets)
    , m_baseOutside(RefPlace::Project)
{
}

void ReferenceResolver::startPage(std::string_view path)
{
    m_own = {RefPlace::ThisPage, m_targets.number(path)};
    m_baseOutside = RefPlace::Project;
    enterFolder(parentFolder(ProjectListing::shown(path)));
}

void ReferenceResolver::enterFolder(const QString &folder)
{
    if (m_known != nullptr && folder == m_folder)
        return;
    m_folder = folder;
    m_known = &m_knownByFolder[folder.toStdString()];
}

void ReferenceResolver::setBase(std::string_view address)
{
    const PageTarget base = targetOfAddress(text(address));
    const auto to = base.place == PageTarget::Place::Relative
                        ? targetInProject(m_project, m_folder, base.path)
                        : std::nullopt;
    if (to) {
        m_own = {RefPlace::Project, m_targets.number(ProjectListing::listed(*to))};
        enterFolder(baseFolder(base.path, *to));
    } else if (base.place != PageTarget::Place::SamePage) {
        m_baseOutside = outside(base.place);
        m_own = {m_baseOutside, 0};
    }
}

ResolvedReference ReferenceResolver::resolve(std::string_view written)
{
    if (const size_t length = schemeLength(written); length > 0)
        return isLinkId(written.substr(0, length)) ? linkId(written.substr(length))
                                                   : ResolvedReference{RefPlace::Elsewhere, 0, {}};
    const size_t hash = std::min(written.find('#'), written.size());
    const Place place = placeOf(written.substr(0, hash));
    if (place.place == RefPlace::Elsewhere || hash >= written.size())
        return {place.place, place.target, {}};
    return {place.place, place.target, decodedAnchor(written.substr(hash + 1))};
}

ReferenceResolver::Place ReferenceResolver::placeOf(std::string_view path)
{
    if (path.empty())
        return m_own;
    if (const auto known = m_known->find(path); known != m_known->end()) {
        const Place &place = known->second;
        if (place.place == RefPlace::ThisPage)
            return m_own;
        const bool isRelative =
            place.place == RefPlace::Project || place.place == RefPlace::OutsideProject;
        return isRelative && m_baseOutside != RefPlace::Project ? m_own : place;
    }
    m_known->emplace(path, workOut(path));
    return placeOf(path);
}

/// What it means in this folder, <base> aside.
ReferenceResolver::Place ReferenceResolver::workOut(std::string_view path)
{
    const PageTarget target = targetOfAddress(text(path));
    if (target.place == PageTarget::Place::SamePage)
        return {RefPlace::ThisPage, 0};
    if (target.place != PageTarget::Place::Relative)
        return {outside(target.place), 0};
    const auto to = targetInProject(m_project, m_folder, target.path);
    if (!to)
        return {RefPlace::OutsideProject, 0};
    return {RefPlace::Project, m_targets.number(ProjectListing::listed(*to))};
}

std::string_view ReferenceResolver::decodedAnchor(std::string_view anchor)
{
    if (isPlain(anchor))
        return anchor;
    m_anchor = targetOfAddress(u'#' + text(anchor)).anchor.toStdString();
    return m_anchor;
}

ResolvedReference ReferenceResolver::linkId(std::string_view written)
{
    m_anchor = QUrl::fromPercentEncoding(QByteArray(written.data(), qsizetype(written.size())))
                   .trimmed()
                   .toStdString();
    return {RefPlace::LinkID, 0, m_anchor};
}
