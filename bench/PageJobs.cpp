#include "PageJobs.h"

#include "Spent.h"
#include "Windows.h"

#include "controls/links/MoveCommands.h"
#include "controls/pages/PageEditor.h"
#include "controls/session/ProjectPages.h"
#include "projectfiles/TableOfContents.h"
#include "tools/PageIndex.h"
#include "tools/PageSearch.h"

#include <QAction>
#include <QApplication>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPlainTextEdit>

#include <algorithm>
#include <filesystem>
#include <functional>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

void printMedian(const char *name, QList<double> numbers, const char *unit)
{
    std::sort(numbers.begin(), numbers.end());
    number(name, numbers.at(numbers.size() / 2), unit);
}

/// Does one and the other in turn, `before` each pair what does not count; prints the medians, and
/// those of the ratios pair by pair.
void inTurn(const std::function<void()> &before, const std::function<void()> &ours,
            const std::function<void()> &plain)
{
    constexpr int rounds = 11;
    QList<std::pair<Spent, Spent>> pairs;
    for (int round = 0; round <= rounds; ++round) {
        before();
        const Spent own = spentBy(ours);
        pairs.append({own, spentBy(plain)});
    }
    pairs.removeFirst(); // warmed up
    for (const auto &[name, part] : {std::pair("ms", &Spent::wall), {"ms CPU", &Spent::cpu}}) {
        QList<double> own, other, ratios;
        for (const auto &[one, two] : std::as_const(pairs)) {
            own.append(one.*part);
            other.append(two.*part);
            ratios.append(own.last() / other.last());
        }
        printMedian("ours", own, name);
        printMedian("plain", other, name);
        printMedian("ratio", ratios, part == &Spent::wall ? "" : "of CPU");
    }
}

/// Finds the pages below a folder and reads each as a whole, as plainly as can be.
void readPlainly(const QByteArray &folder)
{
    QByteArray bytes;
    for (const auto &entry : std::filesystem::recursive_directory_iterator(folder.toStdString())) {
        if (!isPageName(QString::fromStdString(entry.path().filename().string())))
            continue;
        const int file = ::open(entry.path().c_str(), O_RDONLY | O_CLOEXEC);
        struct stat info;
        if (file < 0 || ::fstat(file, &info) != 0)
            qFatal("The yardstick cannot read %s", entry.path().c_str());
        bytes.resize(info.st_size);
        if (::read(file, bytes.data(), static_cast<size_t>(bytes.size())) != bytes.size())
            qFatal("The yardstick cannot read %s", entry.path().c_str());
        ::close(file);
    }
}

QStringList namesIn(FileSystem &files, const QString &folder)
{
    QStringList names;
    for (const FolderEntry &entry : files.kinds(withoutBackslash(folder)))
        names.append(entry.name);
    return names;
}

/// Reads all pages below a folder of the machine for their titles, places and links.
int indexing(const QStringList &arguments)
{
    Windows windows(u"/"_s);
    FileSystem &files = windows.console.files;
    const QString folder = withBackslash(files.productPath(arguments.at(0)));
    qsizetype pages = 0, links = 0;
    const auto ours = [&] {
        PageIndex index;
        index.update(files, folder, namesIn(files, folder), u"ENU"_s);
        const QStringList paths = index.sources();
        pages = paths.size();
        links = 0;
        for (const QString &path : paths)
            links += index.page(path)->links.size();
    };
    inTurn([] {}, ours, [&] { readPlainly(arguments.at(0).toUtf8()); });
    number("pages", static_cast<double>(pages), "");
    number("links", static_cast<double>(links), "");
    return 0;
}

/// Counts the hits of a text in all pages below a folder of the machine.
int find(const QStringList &arguments)
{
    Windows windows(u"/"_s);
    FileSystem &files = windows.console.files;
    SearchedPages pages{withBackslash(files.productPath(arguments.at(0))), u"ENU"_s, {}};
    const QStringList folders = namesIn(files, pages.projectFolder);
    const PageQuery query{
        {.text = arguments.at(1), .isPattern = arguments.value(2) == "pattern"_L1}, {}};
    qsizetype hits = 0;
    const auto ours = [&] {
        hits = 0;
        pages.paths = pagesBelow(files, pages.projectFolder, folders);
        const auto count = [&](const FoundPage &page) { hits += page.hits.size(); };
        searchPages(files, pages, query, {}, count);
    };
    inTurn([] {}, ours, [&] { readPlainly(arguments.at(0).toUtf8()); });
    number("pages", static_cast<double>(pages.paths.size()), "");
    number("hits", static_cast<double>(hits), "");
    return 0;
}

/// A megabyte of marked-up text in lines of that length.
QString page(int lineLength, int size)
{
    const QString piece = u"<p class=\"text\">The pump &amp; the <b>valve</b> of R100.</p> "_s;
    QString line;
    while (line.size() < lineLength)
        line += piece;
    line.truncate(lineLength);
    QString text;
    while (text.size() < size)
        text += line + u'\n';
    return text;
}

/// Sends keys to the end of a line and tells what each took; with the find bar open if asked for.
int typing(const QStringList &arguments)
{
    const QString text = page(arguments.at(1).toInt(), arguments.value(3, u"1000000"_s).toInt());
    const int keys = arguments.at(2).toInt();
    PageEditor editor;
    QPlainTextEdit plain;
    plain.setLineWrapMode(QPlainTextEdit::NoWrap);
    const bool ours = arguments.at(0) != "plain"_L1;
    QWidget *window = ours ? static_cast<QWidget *>(&editor) : &plain;
    window->resize(900, 600);
    window->show();
    auto *view = ours ? editor.findChild<QPlainTextEdit *>(u"txtSource"_s) : &plain;
    ours ? editor.setPage(text) : plain.setPlainText(text);
    QTextCursor cursor(view->document());
    cursor.movePosition(QTextCursor::Down, QTextCursor::MoveAnchor, view->blockCount() / 2);
    cursor.movePosition(QTextCursor::EndOfBlock);
    view->setTextCursor(cursor);
    settle();
    if (arguments.at(0) == "finding"_L1) {
        editor.findChild<QAction *>(u"actFind"_s)->trigger();
        editor.findChild<QLineEdit *>(u"txtFind"_s)->setText(u"pump"_s);
        view->setTextCursor(cursor);
    }
    settle();
    qint64 longest = 0;
    const double before = cpuSeconds();
    for (int key = 0; key < keys; ++key) {
        QElapsedTimer time;
        time.start();
        QKeyEvent press(QEvent::KeyPress, Qt::Key_X, Qt::NoModifier, u"x"_s);
        QCoreApplication::sendEvent(view, &press);
        settle();
        longest = qMax(longest, time.nsecsElapsed());
    }
    const double cpu = cpuSeconds() - before;
    number("CPU per key", cpu * 1000 / keys, "ms");
    number("longest", static_cast<double>(longest) / 1e6, "ms");
    return 0;
}

// ---- renaming a page that others link to

constexpr int manyPages = 2561, linking = 500;

/// A project with one book in a fresh server folder: the first pages link to "target.htm".
TocBook makeLinkedBook(Windows &windows)
{
    FileSystem &files = windows.console.files;
    const QString project = below(windows, u"Plant\\"_s);
    TocBook entry;
    entry.name = entry.acronym = u"GD"_s;
    entry.key = u"Plant"_s;
    entry.folder = u"Book_GD"_s;
    entry.file = u"Book_GD.xml"_s;
    for (const QString &folder : {withoutBackslash(project), project + entry.folder})
        files.makeFolder(folder);
    TableOfContents table(windows.console.session, files);
    table.CreateQVTOCFile(project + ProjectFile::toc);
    Book book;
    book.name = book.acronym = entry.name;
    const QByteArray filler = page(80, 8000).toUtf8();
    for (int i = 0; i <= manyPages; ++i) {
        const QString name = i == 0 ? u"target.htm"_s : u"page%1.htm"_s.arg(i);
        const QByteArray link = i <= linking ? "<a href=\"target.htm#a\">x</a>\n" : "";
        files.replaceFile(project + entry.folder + u'\\' + name, link + filler, {.sync = false});
        book.pages.append({u"P%1"_s.arg(i), name, name, {}, {}});
    }
    BookFile(windows.console.session, files).write(u"Plant"_s, entry, book);
    table.addBook(u"Plant"_s, entry);
    return entry;
}

/// Reads a file, changes the name in it, and puts the result in its place as safely as can be:
/// flushed, renamed, and the folder flushed.
void rewriteOnce(const QByteArray &folder, const QByteArray &name, const QByteArray &from,
                 const QByteArray &to)
{
    const QByteArray path = folder + name, fresh = path + ".tmp";
    QByteArray bytes(1 << 20, Qt::Uninitialized);
    int file = ::open(path.constData(), O_RDONLY | O_CLOEXEC);
    bytes.truncate(::read(file, bytes.data(), static_cast<size_t>(bytes.size())));
    ::close(file);
    bytes.replace(from, to);
    file = ::open(fresh.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
    if (::write(file, bytes.constData(), static_cast<size_t>(bytes.size())) != bytes.size()
        || ::fsync(file) != 0 || ::close(file) != 0
        || ::rename(fresh.constData(), path.constData()) != 0)
        qFatal("The yardstick cannot write %s", path.constData());
    const int entries = ::open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    ::fsync(entries);
    ::close(entries);
}

/// Renames the page and rewrites the same files plainly, in turn; the index of pages is up to date,
/// as in the editors.
int renaming(const QStringList &arguments)
{
    Windows windows(arguments.at(0));
    const TocBook book = makeLinkedBook(windows);
    ProjectSession session(windows.program);
    session.open(u"Plant"_s);
    MoveCommands commands(session);
    const QByteArray folder =
        windows.console.files.nativePath(below(windows, u"Plant\\Book_GD"_s)).toUtf8() + '/';
    QByteArray name = "target.htm", other = "purpose.htm";
    const auto ours = [&] {
        commands.carryOut(commands.planFile(book, u"P0"_s, QString::fromUtf8(other)), true);
        std::swap(name, other);
    };
    const auto plain = [&] {
        for (int i = 1; i <= linking; ++i)
            rewriteOnce(folder, "page" + QByteArray::number(i) + ".htm", name, name);
    };
    inTurn([&] { static_cast<void>(session.pages().current()); }, ours, plain);
    return 0;
}

} // namespace

QList<Job> pageJobs()
{
    return {{"index"_L1, 1, false, indexing},
            {"find"_L1, 2, false, find},
            {"typing"_L1, 3, true, typing},
            {"renaming"_L1, 1, false, renaming}};
}
