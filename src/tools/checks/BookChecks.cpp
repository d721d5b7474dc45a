#include "tools/checks/BookChecks.h"

#include "platform/Paths.h"
#include "tools/links/LinkCheck.h"

#include <QCoreApplication>
#include <QHash>
#include <QSet>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

using Match = ProjectListing::Match;

QString tr(const char *text)
{
    return QCoreApplication::translate("BookChecks", text);
}

class BookCheck final
{
public:
    BookCheck(const BuildInput &input, const ScannedPages &pages, const LinkCheck &links,
              FindingList &findings)
        : m_input(input)
        , m_pages(pages)
        , m_links(links)
        , m_findings(findings)
    {
    }

    void run()
    {
        takeAcronyms();
        for (const BuildBook &book : m_input.books)
            takeBook(book);
        takeGlobals();
        takeUnreadable();
        takePages();
    }

private:
    [[nodiscard]] ProjectListing::Found find(const QString &path) const
    {
        return m_pages.listing().find(ProjectListing::listed(path));
    }

    [[nodiscard]] bool isThere(const QString &path) const
    {
        const Match match = find(path).match;
        return match == Match::Exact || match == Match::OtherCase || match == Match::Ambiguous;
    }

    void add(QLatin1StringView code, const QString &text, const QString &subject = {})
    {
        if (m_findings.takes(code))
            m_findings.add(code, 0, text, subject);
    }

    void takeAcronyms()
    {
        m_findings.startFile(ProjectFile::toc);
        QHash<QString, QString> names;
        for (const BuildBook &book : m_input.books) {
            QString &first = names[book.entry.acronym.toCaseFolded()];
            if (!first.isNull())
                add("BOOK03"_L1,
                    tr("The books \"%1\" and \"%2\" have the same acronym %3.")
                        .arg(first, book.entry.name, book.entry.acronym),
                    book.entry.acronym);
            first = book.entry.name.isNull() ? u""_s : book.entry.name;
        }
    }

    void takeBook(const BuildBook &book)
    {
        m_findings.startFile(ProjectFile::toc);
        const QString file = book.folder + book.entry.file;
        if (book.folder.isEmpty() || find(withoutBackslash(book.folder)).match != Match::Folder)
            add("BOOK02"_L1,
                tr("There is no folder \"%1\" of the book \"%2\" in the project.")
                    .arg(book.entry.folder, book.entry.name),
                book.entry.folder);
        else if (!isThere(file))
            add("BOOK01"_L1,
                tr("There is no file %1 of the book \"%2\".").arg(file, book.entry.name), file);
        m_bookFiles.insert(file.toCaseFolded());
        m_findings.startFile(file);
        for (const BookPage &page : flattened(book.book.pages))
            takePage(book.folder, page.file, page.title);
    }

    void takeGlobals()
    {
        const QString folder = withBackslash(ProjectFile::globalFolder);
        m_findings.startFile(folder + ProjectFile::globalBook);
        for (const GlobalPage &page : m_input.globalPages)
            takePage(folder, page.file, page.title);
    }

    void takePage(const QString &folder, const QString &file, const QString &title)
    {
        const auto path = folder.isEmpty() ? std::nullopt : insideOf(folder, file);
        if (!path) {
            add("BOOK07"_L1,
                tr("The page \"%1\" lies outside the folder of its book: %2.").arg(title, file),
                file);
            return;
        }
        const ProjectListing::Found found = find(*path);
        if (!isThere(*path))
            add("BOOK06"_L1,
                tr("There is no file %1, which is to be the page \"%2\".").arg(*path, title),
                *path);
        else if (found.match == Match::OtherCase)
            add("BOOK08"_L1,
                tr("The outline spells %1, the file is spelled %2.")
                    .arg(*path, ProjectListing::shown(m_pages.listing().files()[found.file].path)),
                *path);
    }

    /// A book file that is missing was told of already.
    void takeUnreadable()
    {
        for (const Finding &problem : m_input.problems) {
            if (m_bookFiles.contains(problem.file.toCaseFolded()) && !isThere(problem.file))
                continue;
            m_findings.startFile(problem.file);
            add("DATA01"_L1, problem.text);
        }
    }

    void takePages()
    {
        for (const ScannedPage &page : m_pages.pages()) {
            if (page.isStyleSheet)
                continue;
            const QString path = ProjectListing::shown(m_pages.pathOf(page));
            const QList<PageOwner> owners = m_input.ownersOf(path);
            m_findings.startFile(path);
            if (owners.size() > 1)
                add("BOOK05"_L1, listedText(owners));
            else if (owners.isEmpty() && !isOfUnreadBook(path))
                add("BOOK04"_L1,
                    m_links.isUsed(page.file)
                        ? tr("The page is in no outline, though there are links to it.")
                        : tr("The page is in no outline, and nothing links to it."));
        }
    }

    static QString listedText(const QList<PageOwner> &owners)
    {
        QStringList places;
        for (const PageOwner &owner : owners.first(std::min<qsizetype>(owners.size(), 5)))
            places.append(tr("as \"%1\" in %2").arg(owner.title, owner.book));
        return tr("The page is listed %1 times: %2.").arg(owners.size()).arg(places.join(u", "_s));
    }

    /// What its outline lists is not known.
    [[nodiscard]] bool isOfUnreadBook(const QString &path) const
    {
        return std::any_of(m_input.books.begin(), m_input.books.end(), [&](const BuildBook &book) {
            return !book.problem.isEmpty() && path.startsWith(book.folder, Qt::CaseInsensitive);
        });
    }

    const BuildInput &m_input;
    const ScannedPages &m_pages;
    const LinkCheck &m_links;
    FindingList &m_findings;
    QSet<QString> m_bookFiles; ///< folded
};

} // namespace

void checkBooks(const BuildInput &input, const ScannedPages &pages, const LinkCheck &links,
                FindingList &findings)
{
    BookCheck(input, pages, links, findings).run();
}
