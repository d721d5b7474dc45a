#include "tools/import/ImportPlanner.h"

#include "platform/Paths.h"
#include "platform/QvError.h"
#include "tools/Checksum.h"
#include "tools/OrderedWork.h"
#include "tools/import/BaseFolder.h"

#include <utility>
#include <vector>

using namespace Qt::StringLiterals;
using Kind = ImportItem::Kind;

namespace {

constexpr int readers = 2;

QString titleOf(const HtmlFacts &facts, const QString &name)
{
    if (!facts.title.isEmpty())
        return facts.title;
    return facts.firstHeading.isEmpty() ? name : facts.firstHeading;
}

} // namespace

ImportPlanner::ImportPlanner(FileSystem &files, QString bookFolder, QString language,
                             QString scratch, const Progress &progress)
    : m_files(files)
    , m_bookFolder(std::move(bookFolder))
    , m_language(std::move(language))
    , m_scratch(std::move(scratch))
    , m_progress(progress)
    , m_book(files, m_bookFolder)
{
}

void ImportPlanner::work(ImportPlan &plan, const QStringList &picked,
                         const QList<BookSource> &sources)
{
    m_plan = &plan;
    noteSources(sources);
    for (const QString &path : picked)
        take(path);
    if (plan.command == ImportCommand::NewerFiles) {
        for (const BookSource &source : sources)
            takeNewer(source);
    }
    readFiles();
    uncheckExcluded();
    findConflicts();
}

void ImportPlanner::omit(const QString &reference, const QString &page, const QString &reason)
{
    if (m_omitted.contains(reference))
        return;
    m_omitted.insert(reference);
    m_plan->omissions.append({reference, page, reason});
}

// ---- what the pages say

/// What a page says.
struct ImportPlanner::ReadPage
{
    PageText page;
    QByteArray sum;
    QString title;
    HtmlFacts facts;
};

/// Style sheets join the list while it is gone through.
void ImportPlanner::readFiles()
{
    readPages();
    for (int i = 0; i < m_plan->items.size(); ++i) {
        if (m_plan->items[i].kind != Kind::Style)
            continue;
        m_progress.step(i, static_cast<int>(m_plan->items.size()), m_plan->items[i].target);
        readStyle(i);
    }
}

/// Only pages are in the list yet. They are read side by side and followed one after the other.
void ImportPlanner::readPages()
{
    const QList<ImportItem> pages = m_plan->items; // the list itself grows meanwhile
    const QList<Origin> origins = m_origins;
    const int count = static_cast<int>(pages.size());
    std::vector<ReadPage> found(static_cast<size_t>(count));
    const auto readOne = [&](int index) {
        if (!isTooLarge(pages.at(index))) // refused later
            found[static_cast<size_t>(index)] = read(pages.at(index), origins.at(index).relative);
    };
    const auto takeOne = [&](int index) {
        m_progress.step(index, count, pages.at(index).target);
        if (!isTooLarge(pages.at(index)))
            takePage(index, std::exchange(found[static_cast<size_t>(index)], {}));
    };
    inOrder(count, readers, m_progress.stop, readOne, takeOne);
}

ImportPlanner::ReadPage ImportPlanner::read(const ImportItem &item, const QString &relative) const
{
    const QByteArray bytes = m_files.readFile(item.source);
    ReadPage read{.page = decodePage(bytes, m_language),
                  .sum = checksumText(bytes),
                  .title = {},
                  .facts = {}};
    const QString name = lastComponent(relative);
    if (item.isMade())
        read.page.text = wholePage(convertedPage(item.format, read.page.text, name), m_language);
    read.facts = scanHtml(read.page.text);
    read.title = titleOf(read.facts, name);
    return read;
}

void ImportPlanner::takePage(int index, const ReadPage &read)
{
    ImportItem &item = m_plan->items[index];
    item.encoding = read.page.encoding;
    item.damaged = read.page.damaged;
    item.sum = read.sum;
    item.title = read.title;
    if (const auto base = baseFolder(m_origins[index].relative, read.page.text, read.facts)) {
        m_base = *base;
        follow(index, read.page.text, read.facts.references);
    } else {
        omit(item.source, item.target,
             u"Its <base> moves its links away; the files it uses are not looked for."_s);
    }
}

void ImportPlanner::readStyle(int index)
{
    m_base = parentFolder(m_origins[index].relative);
    const PageText sheet = decodePage(m_files.readFile(m_plan->items[index].source), m_language);
    follow(index, sheet.text, scanCss(sheet.text));
}

void ImportPlanner::follow(int index, QStringView text, const QList<PageReference> &references)
{
    m_seenReferences.clear();
    m_seenUses.clear();
    for (const PageReference &reference : references)
        followOne(index, reference.kind, text.sliced(reference.start, reference.length));
}

void ImportPlanner::followOne(int index, PageReference::Kind kind, QStringView reference)
{
    const bool link = kind == PageReference::Kind::Link;
    const PageTarget target = targetOf(reference);
    const QString page = m_plan->items[index].target;
    if (target.place == PageTarget::Place::SamePage)
        return;
    if (target.place == PageTarget::Place::Relative) {
        if (m_seenReferences.contains(target.path))
            return;
        m_seenReferences.insert(target.path);
    }
    if (target.place == PageTarget::Place::Elsewhere) {
        if (!link && !reference.trimmed().startsWith(u"data:", Qt::CaseInsensitive))
            omit(reference.toString(), page, u"Outside, not copied: it lies on another machine."_s);
        return;
    }

    const Origin origin = m_origins[index];
    const auto path =
        target.place == PageTarget::Place::Relative ? joined(m_base, target.path) : std::nullopt;
    if (!path) {
        omit(reference.toString(), page,
             u"Outside, not copied: it lies above the folder chosen."_s);
        return;
    }
    const auto entry = origin.top->find(*path);
    if (entry && entry->status.kind == FileKind::File)
        use(index, *entry);
    else if (!entry || entry->status.kind != FileKind::Folder)
        omit(origin.top->root() + *path, page, u"It is missing, or behind a link."_s);
}

void ImportPlanner::use(int index, const FolderIndex::Entry &entry)
{
    const Origin origin{m_origins[index].top, entry.relative};
    const QString source = origin.top->root() + entry.relative;
    const bool fromMarkdown = m_plan->items[index].format == ImportFormat::Markdown;
    const bool toMade = fromMarkdown && m_madeOf.contains(source);
    const bool isPage = isPageName(entry.relative)
                        || (fromMarkdown && importFormat(entry.relative) == ImportFormat::Markdown);
    if (isPage && !toMade && !m_itemOfSource.contains(source)) {
        omit(source, m_plan->items[index].target, u"This page was not chosen."_s);
        return;
    }
    const int used = itemOf(origin, entry.status, toMade);
    if (m_seenUses.contains(used))
        return;
    m_seenUses.insert(used);
    m_plan->items[index].uses.append(used);
}
