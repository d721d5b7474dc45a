#include "tools/PageReference.h"

#include "tools/html/HtmlEntities.h"

#include <QStringList>
#include <QUrl>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

bool hasScheme(QStringView url)
{
    const qsizetype colon = url.indexOf(u':');
    if (colon < 1 || !url[0].isLetter())
        return false;
    return std::all_of(url.begin(), url.begin() + colon, [](QChar c) {
        return c.unicode() < 128 && (c.isLetterOrNumber() || c == u'+' || c == u'-' || c == u'.');
    });
}

QString decoded(const QString &text)
{
    if (!text.contains(u'%'))
        return text;
    return QUrl::fromPercentEncoding(text.toUtf8());
}

/// As browsers do: blanks around it and line ends inside it do not count.
QString tidy(const QString &address)
{
    QString url = address.trimmed();
    url.removeIf([](QChar c) { return c == u'\n' || c == u'\r' || c == u'\t'; });
    return url;
}

} // namespace

PageTarget targetOf(QStringView reference)
{
    return targetOfAddress(withoutEntities(reference));
}

PageTarget targetOfAddress(const QString &address)
{
    PageTarget target;
    QString url = tidy(address);
    if (hasScheme(url) || url.startsWith("//"_L1) || url.startsWith(u"\\\\")) {
        target.place = PageTarget::Place::Elsewhere;
        return target;
    }
    if (const qsizetype hash = url.indexOf(u'#'); hash >= 0) {
        target.anchor = decoded(url.sliced(hash + 1));
        url.truncate(hash);
    }
    if (const qsizetype query = url.indexOf(u'?'); query >= 0)
        url.truncate(query);
    if (url.isEmpty())
        return target;
    target.path = decoded(url).replace(u'\\', u'/');
    target.place =
        target.path.startsWith(u'/') ? PageTarget::Place::Absolute : PageTarget::Place::Relative;
    return target;
}

std::optional<QString> joined(const QString &folder, const QString &path)
{
    QStringList pieces = folder.split(u'\\', Qt::SkipEmptyParts);
    for (const QString &piece : path.split(u'/', Qt::SkipEmptyParts)) {
        if (piece == ".."_L1 && pieces.isEmpty())
            return std::nullopt;
        if (piece == ".."_L1)
            pieces.removeLast();
        else if (piece != "."_L1)
            pieces.append(piece);
    }
    return pieces.join(u'\\');
}

QString referenceTo(const QString &page, const QString &to, const QString &anchor)
{
    const QString behind =
        anchor.isEmpty() ? QString() : u'#' + QString::fromLatin1(QUrl::toPercentEncoding(anchor));
    if (!behind.isEmpty() && page.compare(to, Qt::CaseInsensitive) == 0)
        return behind;
    const QStringList from = page.split(u'\\', Qt::SkipEmptyParts);
    const QStringList pieces = to.split(u'\\', Qt::SkipEmptyParts);
    const qsizetype folders = qMin(from.size(), pieces.size()) - 1;
    qsizetype shared = 0;
    while (shared < folders && from[shared].compare(pieces[shared], Qt::CaseInsensitive) == 0)
        ++shared;
    QStringList reference(from.size() - 1 - shared, u".."_s);
    for (const QString &piece : pieces.sliced(shared))
        reference.append(QString::fromLatin1(QUrl::toPercentEncoding(piece)));
    return reference.join(u'/') + behind;
}

bool isPageName(QStringView fileName)
{
    return fileName.endsWith(u".htm", Qt::CaseInsensitive)
           || fileName.endsWith(u".html", Qt::CaseInsensitive)
           || fileName.endsWith(u".xhtml", Qt::CaseInsensitive);
}
