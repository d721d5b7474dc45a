#pragma once

#include "platform/FileSystem.h"
#include "projectfiles/TableOfContents.h"
#include "startup/PageText.h"
#include "tools/import/PageConversion.h"

#include <QList>
#include <QString>
#include <QStringList>

/// What an import would do, as the author sees and decides it before anything is copied.

/// Which command it is.
enum class ImportCommand {
    SourceFiles, ///< pages as they are, with what they use
    ImportFiles, ///< also text, Markdown, tables and archives
    NewerFiles,  ///< what has changed since it was added
};

/// What happens to a file whose name is taken in the book.
enum class ImportAction {
    Copy,     ///< its name is free
    KeepSame, ///< the very same file is there already; nothing is copied
    Skip,     ///< the book keeps its own file
    Replace,  ///< the book's file goes to _Backup\ and this one takes its place
    Rename,   ///< copied under `renamed`; links of the imported pages to it follow
};

/// A page, or a file that a page uses.
struct ImportItem
{
    enum class Kind { Page, Picture, Style, Script, File } kind = Kind::File;
    ImportFormat format = ImportFormat::Other;
    QString source;     ///< product path, where it is read
    QString remembered; ///< the same as the author knows it: inside an archive "...\\a.zip\\b.htm"
    QString sourceKind; ///< "Source" or "Import", for the book's list of sources
    QString target;     ///< relative to the book folder
    QString renamed;    ///< the free name for Rename, relative to the book folder
    qint64 size = 0;
    QDateTime modified;    ///< UTC
    bool readOnly = false; ///< the source is; the copy will not be

    QString title;         ///< pages: title, else first heading, else file name
    PageEncoding encoding; ///< pages
    bool damaged = false;  ///< pages: some bytes are no text in that encoding
    QByteArray sum;        ///< pages: checksum of the source's bytes
    QList<int> uses;       ///< indexes of the items that this page or style sheet uses or links to

    QString refusal;             ///< why it cannot be copied; empty when it can
    QString conflict;            ///< what has its name already; empty when nothing has
    QList<ImportAction> actions; ///< what the author may choose; the first is proposed
    ImportAction action = ImportAction::Copy;
    bool included = true; ///< the author's check mark

    [[nodiscard]] bool isPage() const { return kind == Kind::Page; }
    /// A page that is made of something else than a page.
    [[nodiscard]] bool isMade() const { return isPage() && isConverted(format); }
    /// Where it will lie, relative to the book folder.
    [[nodiscard]] const QString &destination() const
    {
        return action == ImportAction::Rename ? renamed : target;
    }
};

/// Whether a page is to be made of more than anybody reads as one page.
bool isTooLarge(const ImportItem &item);

/// Something that pages refer to and that stays where it is.
struct ImportOmission
{
    QString reference; ///< as far as it could be worked out
    QString page;      ///< the first page or style sheet that refers to it
    QString reason;
};

struct ImportPlan
{
    ImportCommand command = ImportCommand::SourceFiles;
    QString project;
    TocBook book;
    QString dateChanged = {};     ///< becomes the book's date of change; "" leaves that alone
    QList<ImportItem> items = {}; ///< pages first, in their natural order
    QList<ImportOmission> omissions = {};
};

/// For each item whether it will be in the book as things are decided: checked, not refused, and
/// for what is no page, used by a page (or its style sheet) that will be there too.
QList<bool> takenItems(const ImportPlan &plan);

/// Numbers for the author.
struct ImportTotals
{
    int pages = 0;     ///< taken, those already there included
    int files = 0;     ///< other files taken
    int conflicts = 0; ///< items to be taken whose name other content has
    qint64 bytes = 0;  ///< to be copied
};
ImportTotals totalsOf(const ImportPlan &plan);
