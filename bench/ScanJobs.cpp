#include "ScanJobs.h"

#include "Spent.h"
#include "Windows.h"

#include "projectfiles/ProductFolders.h"
#include "tools/build/PageScan.h"
#include "tools/build/ScannedPages.h"

#include <algorithm>
#include <array>
#include <iterator>

using namespace Qt::StringLiterals;

namespace {

/// Takes the text of each page as an index of its words would, and forgets it.
class TextCounter final : public PageTextTaker
{
public:
    void take(int thread, quint32, const ReadablePage &text) override
    {
        m_bytes[size_t(thread)] += text.text.size();
    }
    [[nodiscard]] bool knows(std::string_view, quint64) const override { return true; }
    [[nodiscard]] size_t bytes() const
    {
        size_t all = 0;
        for (const size_t some : m_bytes)
            all += some;
        return all;
    }

private:
    std::array<size_t, 16> m_bytes{};
};

/// Reads what is not known yet and keeps what was found.
int scanPages(const QStringList &arguments)
{
    Windows windows(u"/"_s);
    FileSystem &files = windows.console.files;
    const BuildInput input = booksIn(files, arguments.at(0));
    TextCounter words;
    ScanWishes wishes{.words = &words, .threads = arguments.value(1, u"2"_s).toInt()};
    const ScannedPages pages = ScannedPages::read(files, input, wishes);
    pages.save(files, input);
    size_t references = 0;
    for (const ScannedPage &page : pages.pages())
        references += page.facts.refs.size();
    number("pages", static_cast<double>(pages.pages().size()), "");
    number("read", pages.freshCount(), "");
    number("references", static_cast<double>(references), "");
    number("targets", static_cast<double>(pages.targets().size()), "");
    number("text", static_cast<double>(words.bytes()) / 1e6, "MB");
    return 0;
}

/// CPU seconds to cut pages into tags, and to take everything from them, once they are in memory.
int tokens(const QStringList &arguments)
{
    Windows windows(u"/"_s);
    FileSystem &files = windows.console.files;
    const BuildInput input = booksIn(files, arguments.at(0));
    const ProjectListing listing = ProjectListing::read(files, input.folder);
    std::vector<std::pair<std::string, QByteArray>> pages;
    double bytes = 0;
    for (const ProjectListing::File &file : listing.files()) {
        const QString name = ProjectListing::shown(file.path);
        if (!isPageName(name))
            continue;
        pages.emplace_back(file.path, files.readFile(input.folder + name));
        bytes += static_cast<double>(pages.back().second.size());
    }
    number("pages", bytes / 1e6, "MB");
    double before = cpuSeconds();
    size_t tags = 0;
    for (const auto &[path, page] : pages) {
        PageTokens cut({page.constData(), size_t(page.size())});
        while (cut.next().kind != PageToken::Kind::End)
            ++tags;
    }
    number("tags and texts", static_cast<double>(tags), "");
    number("cut", cpuSeconds() - before, "s");
    before = cpuSeconds();
    TargetTable targets;
    PageScan scan({input.project, input.language}, targets);
    ReadablePage text;
    for (const auto &[path, page] : pages)
        scan.page(page, path, &text);
    number("links, faults and text", cpuSeconds() - before, "s");
    return 0;
}

} // namespace

BuildInput booksIn(FileSystem &files, const QString &nativeFolder)
{
    BuildInput input;
    input.folder = withBackslash(files.productPath(nativeFolder));
    input.project = lastComponent(withoutBackslash(input.folder));
    input.language = u"ENU"_s;
    const QList<FolderEntry> entries = files.kinds(withoutBackslash(input.folder));
    const auto isOfTheProduct = [](const QString &name) {
        return std::find(std::begin(productFolders), std::end(productFolders), name)
               != std::end(productFolders);
    };
    for (const FolderEntry &entry : entries) {
        if (entry.status.kind == FileKind::Folder && !isOfTheProduct(entry.name))
            input.books.append({{}, {}, entry.name + u'\\'});
    }
    return input;
}

QList<Job> scanJobs()
{
    return {{"scan"_L1, 1, false, scanPages}, {"tokens"_L1, 1, false, tokens}};
}
