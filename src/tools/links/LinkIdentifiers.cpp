#include "tools/links/LinkIdentifiers.h"

#include "components/NameRules.h"
#include "platform/Paths.h"

using namespace Qt::StringLiterals;

namespace {

QString text(std::string_view utf8)
{
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

void takePage(QList<PublishedTarget> &targets, const ScannedPages &pages, const ScannedPage &page)
{
    for (const PublishedLink &link : page.facts.linkIds) {
        const QString identifier = linkIdentifier(page.facts.of(link.name));
        if (!identifier.isEmpty())
            targets.append({.identifier = identifier,
                            .file = ProjectListing::shown(pages.pathOf(page)),
                            .anchor = linkIdentifier(page.facts.of(link.anchor)),
                            .line = static_cast<int>(link.line)});
    }
}

/// A page of an outline as it is spelled on the disk.
PublishedTarget targetOf(const ProjectListing &listing, const QString &file)
{
    const QString spelled = listing.spelled(file);
    return {.identifier = {},
            .file = spelled.isEmpty() ? file : spelled,
            .isThere = !spelled.isEmpty()};
}

void takeOutline(QList<PublishedTarget> &targets, const ProjectListing &listing,
                 const BuildBook &book)
{
    for (const BookPage &page : flattened(book.book.pages)) {
        const auto file = insideOf(book.folder, page.file);
        if (page.linkIds.isEmpty() || !file)
            continue;
        PublishedTarget target = targetOf(listing, *file);
        for (const QString &id : page.linkIds) {
            target.identifier = linkIdentifier(id);
            if (!target.identifier.isEmpty())
                targets.append(target);
        }
    }
}

} // namespace

QString linkIdentifier(const QString &text)
{
    QString plain = NameRules::withoutControls(text.trimmed());
    return plain.replace(QChar(0xFFFE), u' ').replace(QChar(0xFFFF), u' ').trimmed();
}

QString linkIdentifier(std::string_view utf8)
{
    return linkIdentifier(text(utf8));
}

QList<PublishedTarget> publishedTargets(const BuildInput &input, const ScannedPages &pages)
{
    QList<PublishedTarget> targets;
    for (const ScannedPage &page : pages.pages())
        takePage(targets, pages, page);
    for (const BuildBook &book : input.books)
        takeOutline(targets, pages.listing(), book);
    return targets;
}

QList<AskedIdentifier> askedIdentifiers(const ScannedPages &pages)
{
    QList<AskedIdentifier> asked;
    for (const ScannedPage &page : pages.pages()) {
        for (const PageRef &ref : page.facts.refs) {
            if (ref.place != RefPlace::LinkID)
                continue;
            const QString identifier = linkIdentifier(page.facts.of(ref.anchor));
            if (!identifier.isEmpty())
                asked.append({identifier, ProjectListing::shown(pages.pathOf(page))});
        }
    }
    return asked;
}
