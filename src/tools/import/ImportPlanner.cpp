#include "tools/import/ImportPlanner.h"

#include "platform/Paths.h"
#include "platform/QvError.h"
#include "tools/import/BaseFolder.h"

#include <QCryptographicHash>

using namespace Qt::StringLiterals;
using Kind = ImportItem::Kind;

namespace {

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
    readPages();
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

/// Style sheets join the list while it is gone through.
void ImportPlanner::readPages()
{
    for (int i = 0; i < m_plan->items.size(); ++i) {
        m_progress.step(i, static_cast<int>(m_plan->items.size()), m_plan->items[i].target);
        if (m_plan->items[i].isPage())
            readPage(i);
        else if (m_plan->items[i].kind == Kind::Style)
            readStyle(i);
    }
}

void ImportPlanner::readPage(int index)
{
    ImportItem &item = m_plan->items[index];
    if (isTooLarge(item))
        return; // refused later
    const QByteArray bytes = m_files.readFile(item.source);
    PageText page = decodePage(bytes, m_language);
    item.encoding = page.encoding;
    item.damaged = page.damaged;
    item.sum = QCryptographicHash::hash(bytes, QCryptographicHash::Md5).toHex();
    const QString name = lastComponent(m_origins[index].relative);
    if (item.isMade())
        page.text = wholePage(convertedPage(item.format, page.text, name), m_language);
    const HtmlFacts facts = scanHtml(page.text);
    item.title = titleOf(facts, name);
    if (const auto base = baseFolder(m_origins[index].relative, page.text, facts)) {
        m_base = *base;
        follow(index, page.text, facts.references);
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
