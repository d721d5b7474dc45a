#include "tools/checks/AssetChecks.h"

#include "platform/Paths.h"
#include "tools/PageReference.h"
#include "tools/links/LinkCheck.h"
#include "tools/pack/PackContents.h"

#include <QCoreApplication>
#include <QLocale>
#include <QSet>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// The files that the project's own lists name, folded.
QSet<QString> listedFiles(const BuildInput &input)
{
    const QString globals = withBackslash(ProjectFile::globalFolder) + ProjectFile::globalBook;
    QSet<QString> files{globals.toCaseFolded()};
    for (const BuildBook &book : input.books)
        files.insert((book.folder + book.entry.file).toCaseFolded());
    return files;
}

QStringList authorsFolders(const BuildInput &input)
{
    QStringList folders;
    const QStringList all = input.pageFolders();
    for (const QString &folder : all)
        folders.append(withBackslash(folder).toCaseFolded());
    return folders;
}

bool isBelowOne(const QStringList &folders, const QString &folded)
{
    return std::any_of(folders.begin(), folders.end(),
                       [&](const QString &folder) { return folded.startsWith(folder); });
}

} // namespace

void checkUnusedFiles(const BuildInput &input, const ScannedPages &pages, const LinkCheck &links,
                      FindingList &findings)
{
    const QSet<QString> listed = listedFiles(input);
    const QStringList folders = authorsFolders(input);
    const PackContents packed = packContents(input, pages.listing(), false);
    for (const ProjectListing::File &file : packed.files) {
        const QString path = ProjectListing::shown(file.path);
        const QString folded = path.toCaseFolded();
        if (isPageName(path) || listed.contains(folded) || !isBelowOne(folders, folded)
            || links.isUsed(pages.listing().find(file.path).file))
            continue;
        findings.startFile(path);
        if (findings.takes("ASSET02"_L1))
            findings.add(
                "ASSET02"_L1, 0,
                QCoreApplication::translate("AssetChecks", "Nothing refers to this file of %1.")
                    .arg(QLocale().formattedDataSize(file.size)));
    }
}
