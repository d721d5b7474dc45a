#include "dialogs/merge/RenamedLinks.h"

#include "platform/Paths.h"
#include "platform/TreeWalker.h"
#include "startup/PageText.h"
#include "tools/ReferenceRewriter.h"
#include "tools/html/HtmlScan.h"

using namespace Qt::StringLiterals;

namespace {

bool isStyleSheet(const QString &name)
{
    return name.endsWith(".css"_L1, Qt::CaseInsensitive);
}

/// Pages and style sheets below a folder.
QList<TreeEntry> referringFiles(FileSystem &files, const QString &folder)
{
    QList<TreeEntry> found;
    walkTree(files, folder, [&](const TreeEntry &entry) {
        if (entry.status.kind == FileKind::File
            && (isPageName(entry.relative) || isStyleSheet(entry.relative)))
            found.append(entry);
    });
    return found;
}

} // namespace

RenamedLinks::RenamedLinks(FileSystem &files, const QString &project,
                           const QHash<QString, QString> &renamed, const QString &language)
    : m_files(files)
    , m_project(project)
    , m_language(language)
{
    for (auto folder = renamed.cbegin(); folder != renamed.cend(); ++folder) {
        const QString name = lastComponent(folder.value());
        // A link may lead through the project's own folder, whose name is written as its marker.
        for (const QString &top : {project, u"**"_s + project + u"**"_s})
            m_names.insert((top + u'\\' + folder.key()).toCaseFolded(), name);
    }
}

void RenamedLinks::rewrite(const QString &folder, const QString &oldFolder,
                           const Progress &progress)
{
    const QList<TreeEntry> found = referringFiles(m_files, folder);
    const int total = static_cast<int>(found.size());
    for (int i = 0; i < total; ++i) {
        progress.step(i, total, lastComponent(found[i].path));
        rewriteFile(found[i].path, oldFolder + u'\\' + parentFolder(found[i].relative));
    }
}

void RenamedLinks::rewriteFile(const QString &path, const QString &oldFolder)
{
    const QByteArray bytes = m_files.readFile(path);
    const PageText page = decodePage(bytes, m_language);
    HtmlFacts facts;
    if (isStyleSheet(path))
        facts.references = scanCss(page.text);
    else
        facts = scanHtml(page.text);

    const QString base = m_project + u'\\' + oldFolder;
    const QString changed =
        withRenamedFolders(page.text, facts.references, [&](const QString &target) {
            return m_names.value(joined(base, target).value_or(QString()).toCaseFolded());
        });
    if (changed == page.text)
        return;
    if (facts.hasBase)
        m_remarks.append(u"The page has a base address: "_s + path);
    else if (page.damaged || encodePage(page.text, page.encoding) != bytes)
        m_remarks.append(u"Bytes in it are no text: "_s + path);
    else
        m_files.replaceFile(path, encodePage(changed, page.encoding), {false, true});
}
