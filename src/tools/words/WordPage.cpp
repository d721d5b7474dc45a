#include "tools/words/WordPage.h"

#include "platform/Paths.h"
#include "platform/QvError.h"

#include <QSet>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

QString titleOf(const ScannedPage &page, const QString &outlineTitle, const QString &target)
{
    const auto text = [&](TextSpan span) {
        const std::string_view piece = page.facts.of(span);
        return QString::fromUtf8(piece.data(), static_cast<qsizetype>(piece.size())).simplified();
    };
    if (QString title = text(page.facts.title); !title.isEmpty())
        return title;
    if (!outlineTitle.isEmpty())
        return outlineTitle;
    for (const PageHeading &heading : page.facts.headings) {
        if (QString title = text(heading.text); !title.isEmpty())
            return title;
    }
    return lastComponent(target);
}

/// The book in whose folder a page lies that no outline has.
QString bookAround(const BuildInput &input, const QString &target)
{
    for (const BuildBook &book : input.books) {
        if (!book.folder.isEmpty() && target.startsWith(book.folder, Qt::CaseInsensitive))
            return book.entry.acronym;
    }
    return {};
}

SearchPage shownPage(const BuildInput &input, const ScannedPage &page, const QString &target)
{
    const PageOwner owner = input.ownersOf(target).value(0);
    return {.number = 0,
            .book = owner.book.isEmpty() ? bookAround(input, target) : owner.book,
            .page = owner.id,
            .target = target,
            .title = titleOf(page, owner.title, target),
            .sum = page.sum,
            .words = 0};
}

/// Only those that a build can have given: each once, and no more than there ever were pages.
void takeNumbers(PageNumbers &numbers, const SearchPages &pages)
{
    constexpr quint32 mostNumbers = 100'000'000;
    if (pages.next > mostNumbers)
        return;
    QSet<quint32> taken;
    for (const SearchPage &page : pages.pages) {
        if (page.number >= pages.next || taken.contains(page.number))
            continue;
        taken.insert(page.number);
        numbers.known.insert(page.target, page.number);
    }
    numbers.next = pages.next;
}

} // namespace

PageNumbers pageNumbers(FileSystem &files, const QString &folder)
{
    const QString path = folder + u'\\' + SearchFile::pages;
    PageNumbers numbers;
    // Unreadable: it is about to be replaced as a whole, only the numbers begin anew.
    trap([](const QvError &) {},
         [&] {
             if (!files.exists(path))
                 return;
             takeNumbers(numbers, readSearchPages(files, path));
         });
    return numbers;
}

std::vector<WordPage> wordPages(const BuildInput &input, const ScannedPages &scanned,
                                PageNumbers &numbers)
{
    std::vector<WordPage> pages;
    pages.reserve(scanned.pages().size());
    for (const ScannedPage &page : scanned.pages()) {
        if (page.isStyleSheet || !page.problem.isEmpty())
            continue;
        const QString target = ProjectListing::shown(scanned.pathOf(page));
        pages.push_back({&page, shownPage(input, page, target)});
        const quint32 number = numbers.known.take(target);
        pages.back().shown.number = number != 0 ? number : numbers.next++;
    }
    std::sort(pages.begin(), pages.end(),
              [](const WordPage &a, const WordPage &b) { return a.shown.number < b.shown.number; });
    return pages;
}
