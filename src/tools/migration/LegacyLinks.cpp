#include "tools/migration/LegacyLinks.h"

#include "platform/Paths.h"
#include "tools/RelativePath.h"
#include "tools/html/CssScan.h"
#include "tools/html/HtmlEntities.h"
#include "tools/html/HtmlScan.h"

#include <QUrl>

using namespace Qt::StringLiterals;

namespace {

/// The path of a reference that names a drive or another machine, as the database may do it too.
QString absolutePath(QStringView written)
{
    QString path = withoutEntities(written).trimmed();
    path.truncate(path.indexOf(u'#') < 0 ? path.size() : path.indexOf(u'#'));
    const bool isDrive = path.size() > 2 && path.at(1) == u':';
    return isDrive || path.startsWith("\\\\"_L1) ? QUrl::fromPercentEncoding(path.toUtf8())
                                                 : QString();
}

/// Query and anchor of a reference; the "#" of a character reference begins none.
QString behindPath(const QString &written)
{
    for (qsizetype at = 0; at < written.size(); ++at) {
        const QChar c = written.at(at);
        if (c == u'?' || (c == u'#' && (at == 0 || written.at(at - 1) != u'&')))
            return written.sliced(at);
    }
    return {};
}

QString asFolder(const QString &path)
{
    return path.isEmpty() ? path : withBackslash(path);
}

/// The place that a reference means.
QString placeOf(const QString &folder, QStringView written)
{
    const PageTarget target = targetOf(written);
    const QString path =
        target.place == PageTarget::Place::Elsewhere ? absolutePath(written) : target.path;
    return path.isEmpty() ? QString() : oldPlace(folder, path);
}

} // namespace

LinkFollower::LinkFollower(const OldPlaces &places, const PlacedFile &file)
    : m_places(places)
    , m_file(file)
    , m_before(parentFolder(file.before))
    , m_now(parentFolder(file.now))
{
}

QString LinkFollower::page(const QString &html)
{
    if (!m_places.anyMoved())
        return html;
    const HtmlFacts facts = scanHtml(html, HtmlDetail::All);
    if (facts.hasBase) {
        const PageTarget base =
            targetOf(QStringView(html).sliced(facts.base.start, facts.base.length));
        const QString folder = base.path.first(base.path.lastIndexOf(u'/') + 1);
        const auto now = joined(m_now, folder);
        if (base.place != PageTarget::Place::Relative || !now)
            return html;
        m_before = asFolder(oldPlace(m_before, folder));
        m_now = asFolder(*now);
    }
    return followed(html, facts.references);
}

QString LinkFollower::styleSheet(const QString &css)
{
    return m_places.anyMoved() ? followed(css, scanCss(css)) : css;
}

QString LinkFollower::followed(const QString &text, const QList<PageReference> &references)
{
    QString result;
    qsizetype from = 0;
    for (const PageReference &reference : references) {
        if (reference.start < from)
            continue;
        result += QStringView(text).sliced(from, reference.start - from);
        result += followed(text.sliced(reference.start, reference.length));
        from = reference.start + reference.length;
    }
    return from == 0 ? text : result += QStringView(text).sliced(from);
}

QString LinkFollower::followed(const QString &written) const
{
    const QString before = placeOf(m_before, written);
    const MovedPlace *target = before.isEmpty() ? nullptr : m_places.find(before, m_file.family);
    if (!target || (target->before == target->now && m_before == m_now))
        return written;
    if (isInProject(m_before) && isInProject(before))
        return redirected(written, {m_before, before}, {m_now, target->now});
    return referenceTo(m_now + u"page"_s, target->now) + behindPath(written);
}
