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
    const PackChoice packed(input, false);
    const std::vector<ProjectListing::File> &all = pages.listing().files();
    for (quint32 file = 0; file < all.size(); ++file) {
        const QString path = ProjectListing::shown(all[file].path);
        if (links.isUsed(file) || isPageName(path))
            continue;
        const QString folded = path.toCaseFolded();
        if (listed.contains(folded) || !isBelowOne(folders, folded) || !packed.takes(path))
            continue;
        findings.startFile(path);
        if (findings.takes("ASSET02"_L1))
            findings.add(
                "ASSET02"_L1, 0,
                QCoreApplication::translate("AssetChecks", "Nothing refers to this file of %1.")
                    .arg(QLocale().formattedDataSize(all[file].size)));
    }
}
