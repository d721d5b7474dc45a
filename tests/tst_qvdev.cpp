#include <QDir>
#include <QDirIterator>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#ifdef Q_OS_UNIX
#include <csignal>
#endif

using namespace Qt::StringLiterals;

namespace {

const QString program = QStringLiteral(QVDEV_PROGRAM);

/// What one call came to.
struct Run
{
    int status;
    QString out, err;

    [[nodiscard]] QJsonDocument json() const { return QJsonDocument::fromJson(out.toUtf8()); }
};

Run ended(QProcess &process)
{
    const bool ran =
        process.waitForFinished(60'000) && process.exitStatus() == QProcess::NormalExit;
    return {ran ? process.exitCode() : -1, QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError())};
}

/// A server in a folder of its own, as scripts see it.
class Server
{
public:
    Server()
    {
        QDir(m_folder.path()).mkpath(u"server/Docs"_s);
        QDir(m_folder.path()).mkpath(u"settings"_s);
    }

    [[nodiscard]] QString path(const QString &below) const { return m_folder.filePath(below); }
    [[nodiscard]] QString docs(const QString &below = {}) const
    {
        return path(u"server/Docs/"_s + below);
    }
    void put(const QString &below, const QByteArray &bytes) const
    {
        QDir().mkpath(QFileInfo(path(below)).path());
        QFile file(path(below));
        QVERIFY(file.open(QFile::WriteOnly) && file.write(bytes) == bytes.size());
    }
    /// Enough of them for work that takes its time.
    void putPages(const QString &folder, int count) const
    {
        for (int page = 0; page < count; ++page) {
            QByteArray words;
            for (int word = 0; word < 2000; ++word)
                words += " w" + QByteArray::number(page * word % 70001);
            put(u"%1/p%2.htm"_s.arg(folder).arg(page), "<html lang=en><title>P</title><p>" + words);
        }
    }

    void start(QProcess &process, const QStringList &words) const
    {
        start(process, program, words);
    }
    void start(QProcess &process, const QString &what, const QStringList &words) const
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"QUOVANE_SETTINGS"_s, path(u"settings"_s));
        environment.insert(u"QUOVANE_DRIVES"_s, path(u"drives"_s));
        process.setProcessEnvironment(environment);
        process.start(what, words);
    }
    [[nodiscard]] Run run(const QStringList &words) const
    {
        QProcess process;
        start(process, words);
        return ended(process);
    }
    [[nodiscard]] Run operator()(const QStringList &words) const
    {
        return run(QStringList{u"--server"_s, path(u"server"_s)} + words);
    }

private:
    QTemporaryDir m_folder;
};

#ifdef Q_OS_UNIX
/// Until Ctrl+C means Stop to it.
void waitUntilItListens(QProcess &process)
{
    QVERIFY(process.waitForStarted());
    const auto listens = [&] {
        QFile status(u"/proc/%1/status"_s.arg(process.processId()));
        const QByteArray text = status.open(QFile::ReadOnly) ? status.readAll() : QByteArray();
        const QByteArray caught = text.mid(text.indexOf("SigCgt:") + 7).trimmed().left(16);
        return (caught.toULongLong(nullptr, 16) & (1U << (SIGINT - 1))) != 0;
    };
    while (!listens())
        QVERIFY(!process.waitForFinished(0));
}

#endif

QStringList namesIn(const Run &list)
{
    QStringList names;
    for (const QJsonValue &row : list.json().array())
        names.append(row["name"_L1].toString());
    return names;
}

QStringList codesIn(const Run &build)
{
    QStringList codes;
    for (const QJsonValue &stage : build.json()["stages"_L1].toArray()) {
        for (const QJsonValue &finding : stage["findings"_L1].toArray())
            codes.append(finding["code"_L1].toString());
    }
    codes.removeDuplicates();
    return codes;
}

const QByteArray goodPage =
    "<html lang=\"en\"><head><title>Start</title></head><body><h1>Start</h1>"
    "<p data-x=\"1\"><a data-qv-ibd=\"START\">here</a> "
    "<a href=\"next.htm\">on to the next</a></p></body></html>";
const QByteArray nextPage = "<html lang=\"en\"><head><title>Next</title></head><body><h1>Next</h1>"
                            "<p><a href=\"qvlink:START\">to the start</a></p></body></html>";

} // namespace

#define SUCCEEDS(call, expected)                                                                   \
    do {                                                                                           \
        const Run made = call;                                                                     \
        QVERIFY2(made.status == (expected), qPrintable(made.out + made.err));                      \
    } while (false)

class tst_qvdev final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void takesAProjectThroughItsLife();
    void findsWhatIsBad();
    void refusesInWords();
    void answersAboutAnExistingFolder();
    void worksInAnySurroundings();
    void stopsAtCtrlC();
    void explainsItself();
    void migrates();
};

void tst_qvdev::takesAProjectThroughItsLife()
{
    const Server server;
    server.put(u"pages/start.htm"_s, goodPage);
    server.put(u"pages/next.htm"_s, nextPage);

    SUCCEEDS(server({u"new"_s, u"Plant"_s, u"--id"_s, u"P1"_s}), 0);
    const Run added = server({u"import"_s, u"Plant"_s, u"PU"_s, server.path(u"pages"_s),
                              u"--new-book"_s, u"Pumps"_s, u"--json"_s});
    QCOMPARE(added.status, 0);
    QCOMPARE(added.json()["pages"_L1].toArray(), (QJsonArray{u"next.htm"_s, u"start.htm"_s}));
    QVERIFY(QFile::exists(server.docs(u"Plant/Book_PU/Book_PU.xml"_s)));

    const Run tooEarly = server({u"release"_s, u"Plant"_s});
    QCOMPARE(tooEarly.status, 1);
    QVERIFY(tooEarly.err.startsWith("The project \"Plant\" is not built as it is now."_L1));
    const Run built = server({u"build"_s, u"Plant"_s, u"--json"_s});
    QVERIFY2(built.status == 0, qPrintable(built.out));
    QCOMPARE(built.json()["end"_L1], QJsonValue(u"The build is done."_s));
    QCOMPARE(built.json()["stages"_L1].toArray().size(), 6);
    QCOMPARE(built.json()["stages"_L1][4]["stage"_L1].toString(), u"words"_s);
    QVERIFY(built.err.isEmpty()); // progress is for terminals
    SUCCEEDS(server({u"check"_s, u"Plant"_s}), 0);
    const QJsonValue link =
        server({u"who-links"_s, u"Plant"_s, u"pu"_s, u"next.htm"_s, u"--json"_s}).json()[0];
    QCOMPARE(link["from"_L1].toString() + link["text"_L1].toString(),
             u"Book_PU\\start.htmon to the next"_s);
    const QJsonValue asking =
        server({u"who-links"_s, u"Plant"_s, u"PU"_s, u"start.htm"_s, u"--json"_s}).json()[0];
    QCOMPARE(asking["from"_L1].toString() + asking["link"_L1].toString(),
             u"Plant\\Book_PU\\next.htmqvlink:START"_s);

    const Run packed = server({u"pack"_s, u"Plant"_s, u"--json"_s});
    QCOMPARE(packed.json()["path"_L1].toString(),
             QDir::toNativeSeparators(server.docs(u"Plant/QVPlant_Server.Zip"_s)));
    QVERIFY(QFileInfo(server.docs(u"Plant/QVPlant_Server.Zip"_s)).size() > 1000);
    SUCCEEDS(server({u"release"_s, u"Plant"_s, u"--date"_s, u"2026-02-03"_s}), 0);
    SUCCEEDS(
        server({u"copy"_s, u"Plant"_s, u"Werk"_s, u"--id"_s, u"W"_s, u"--language"_s, u"deu"_s}),
        0);
    QVERIFY(QFile::exists(server.docs(u"DEU_Werk/Book_PU/start.htm"_s)));
    SUCCEEDS(server({u"build"_s, u"Plant"_s}), 1); // it is released
    SUCCEEDS(server({u"reopen"_s, u"Plant"_s}), 0);
    const Run merged =
        server({u"merge"_s, u"Both"_s, u"--id"_s, u"B"_s, u"Plant"_s, u"DEU_Werk"_s, u"--json"_s});
    QCOMPARE(merged.status, 2); // START has two targets now
    QCOMPARE(merged.json()["books"_L1].toInt(), 2);
    QCOMPARE(merged.json()["findings"_L1][0]["kind"_L1].toString(), u"Book renamed"_s);

    SUCCEEDS(server({u"rank"_s, u"Both=7"_s, u"Plant=12"_s}), 0);
    const Run list = server({u"list"_s, u"--json"_s});
    QCOMPARE(list.json()[0]["rank"_L1].toString() + list.json()[2]["rank"_L1].toString(), u"127"_s);
    const Run targets = server({u"report"_s, u"targets"_s, u"--output"_s, server.path(u"t.csv"_s),
                                u"--format"_s, u"csv"_s});
    QCOMPARE(targets.out, QString());
    QFile csv(server.path(u"t.csv"_s));
    QVERIFY(csv.open(QFile::ReadOnly) && csv.readAll().contains("START"));

    SUCCEEDS(server({u"delete"_s, u"DEU_Werk"_s, u"--yes"_s}), 0);
    QVERIFY(QFile::exists(server.docs(u"DEU_Werk"_s)));
    SUCCEEDS(server({u"delete"_s, u"Plant"_s, u"--files"_s, u"--yes"_s}), 0);
    QVERIFY(!QFile::exists(server.docs(u"Plant"_s)));
    QCOMPARE(namesIn(server({u"list"_s, u"--json"_s})), QStringList{u"Both"_s});
}

void tst_qvdev::findsWhatIsBad()
{
    const Server server;
    server.put(u"bad.htm"_s, QByteArray(goodPage).replace("next.htm", "gone.htm"));
    server.put(u"lost.htm"_s, QByteArray(nextPage).replace("START", "NOWHERE"));
    SUCCEEDS(server({u"new"_s, u"Plant"_s, u"--id"_s, u"P1"_s}), 0);
    SUCCEEDS(server({u"import"_s, u"Plant"_s, u"PU"_s, server.path(u"bad.htm"_s),
                     server.path(u"lost.htm"_s), u"--new-book"_s, u"Pumps"_s}),
             0);

    const Run checked = server({u"check"_s, u"Plant"_s, u"--level"_s, u"links"_s, u"--json"_s});
    QCOMPARE(checked.status, 2);
    QVERIFY(codesIn(checked).contains(u"LINK01"_s));
    SUCCEEDS(server({u"build"_s, u"Plant"_s, u"--tool"_s, u"context"_s, u"--no-checks"_s}), 0);
    SUCCEEDS(server({u"release"_s, u"Plant"_s}), 1); // the other tools still must run
    const Run built = server({u"build"_s, u"Plant"_s});
    QCOMPARE(built.status, 2);
    QVERIFY(built.out.contains("Book_PU\\bad.htm(1): LINK01 There is no file"_L1));
    QVERIFY(built.out.endsWith("\nThe build is done.\n"_L1));

    const Run report = server({u"report"_s, u"--bad"_s});
    QCOMPARE(report.status, 2);
    QVERIFY(report.out.startsWith("BAD\tNOWHERE\t"_L1) && report.out.count(u'\n') == 1);
    SUCCEEDS(server({u"report"_s, u"targets"_s, u"--json"_s}), 0);
}

void tst_qvdev::refusesInWords()
{
    const Server server;
    server.put(u"notes.bin"_s, QByteArray(100, '\0'));
    SUCCEEDS(server({u"new"_s, u"Plant"_s, u"--id"_s, u"P1"_s}), 0);
    const struct
    {
        QStringList words;
        int status;
        QLatin1StringView says;
    } refusals[] = {
        {{u"new"_s, u"plant"_s, u"--id"_s, u"P"_s}, 1, "Project already exists"_L1},
        {{u"new"_s, u"a:b"_s, u"--id"_s, u"P"_s}, 1, " : "_L1},
        {{u"new"_s, u"A"_s, u"--id"_s, u"P"_s, u"--language"_s, u"FRA"_s},
         1,
         "There is no language \"FRA\"."_L1},
        {{u"copy"_s, u"Plant"_s, u"B"_s, u"--id"_s, u"B"_s}, 1, "is not released"_L1},
        {{u"build"_s, u"Other"_s}, 1, "There is no project \"Other\" in the list"_L1},
        {{u"build"_s, u"Plant"_s, u"--tool"_s, u"all"_s}, 1, "There is no tool \"all\"."_L1},
        {{u"rank"_s, u"Plant=0"_s}, 1, "A rank is a whole number from 1 to 32000: Plant=0"_L1},
        {{u"import"_s, u"Plant"_s, u"XX"_s, server.path(u"notes.bin"_s)},
         1,
         "There is no book \"XX\" in the project. It has no books. Give --new-book NAME"_L1},
        {{u"import"_s, u"Plant"_s, u"XX"_s, server.path(u"notes.bin"_s), u"--new-book"_s, u"X"_s},
         1,
         "There is no page in these files that can be added. Nothing was added"_L1},
        {{u"delete"_s, u"Plant"_s, u"--files"_s},
         1,
         "Are you sure you want to delete?\nProject: Plant\nGive --yes to delete it."_L1},
        {{u"pack"_s, u"Plant"_s, u"--release"_s},
         1,
         "The project \"Plant\" is not built as it is now. Build it, then release it"_L1},
        {{u"list"_s, u"--server"_s, {}}, 64, "--server names no folder."_L1},
        {{u"frob"_s}, 64, "There is no command \"frob\"."_L1},
        {{u"new"_s, u"A"_s}, 64, "--id is missing.\nusage: qvdev new NAME --id ID"_L1},
        {{u"list"_s, u"--frob"_s}, 64, "frob"_L1},
        {{u"reopen"_s, u"Plant"_s, u"Other"_s}, 64, "What is \"Other\"?"_L1},
        {{}, 64, "usage: qvdev COMMAND"_L1},
    };
    for (const auto &[words, status, says] : refusals) {
        const Run run = server(words);
        QVERIFY2(run.status == status && run.err.contains(says) && run.out.isEmpty(),
                 qPrintable(words.join(u' ') + u": "_s + run.out + run.err));
        const Run asJson = server(QStringList{u"--json"_s} + words);
        const QString refused = asJson.json()["refused"_L1].toString();
        QVERIFY2(asJson.status == status && !refused.isEmpty() && asJson.err.startsWith(refused),
                 qPrintable(words.join(u' ') + u": "_s + asJson.out + asJson.err));
    }
    QCOMPARE(namesIn(server({u"list"_s, u"--json"_s})), QStringList{u"Plant"_s});
    QVERIFY(!QFile::exists(server.docs(u"Plant/Book_XX"_s))); // the new book was taken back

    const Run lost = server.run({u"list"_s});
    QCOMPARE(lost.status, 1);
    QVERIFY(lost.err.contains("give --server DIR"_L1));
    const Run noDocs = server.run({u"list"_s, u"--server"_s, server.path(u"settings"_s)});
    QVERIFY(noDocs.status == 1 && noDocs.err.startsWith("There is no folder Docs in "_L1));
}

void tst_qvdev::answersAboutAnExistingFolder()
{
    const Server server;
    SUCCEEDS(server({u"new"_s, u"Plant"_s, u"--id"_s, u"P1"_s}), 0);
    SUCCEEDS(server({u"delete"_s, u"Plant"_s, u"--yes"_s}), 0);
    const QStringList again{u"new"_s, u"Plant"_s, u"--id"_s, u"P2"_s};

    const Run refused = server(again);
    QCOMPARE(refused.status, 1);
    QVERIFY(refused.err.contains("is already there with files in it"_L1));
    QVERIFY(refused.err.endsWith("--existing-folder aside. Nothing was made.\n"_L1));
    SUCCEEDS(server(again + QStringList{u"--existing-folder"_s, u"list"_s}), 0);
    SUCCEEDS(server({u"delete"_s, u"Plant"_s, u"--yes"_s}), 0);
    SUCCEEDS(server(again + QStringList{u"--existing-folder"_s, u"aside"_s}), 0);
    QCOMPARE(QDir(server.docs()).entryList({u"Plant (moved aside *"_s}).size(), 1);
    QCOMPARE(namesIn(server({u"list"_s, u"--json"_s})), QStringList{u"Plant"_s});
}

void tst_qvdev::worksInAnySurroundings()
{
#ifndef Q_OS_UNIX
    QSKIP("They are those of a shell.");
#endif
    const Server server;
    server.put(u"pages/start.htm"_s, goodPage);
    server.put(u"pages/next.htm"_s, nextPage);
    server.put(u"notes.bin"_s, "x");
    const auto shell = [&](const QString &line) {
        QProcess process;
        server.start(
            process, u"bash"_s,
            {u"-c"_s,
             u"set -o pipefail; S=$1; cd \"$2\"; q() { \"$0\" --server \"$S\" \"$@\"; }; "_s + line,
             program, server.path(u"server"_s), server.path({})});
        return ended(process);
    };
    SUCCEEDS(shell(u"q new --id D -- '--Öl (50 %)' && q new Plant --id P"_s), 0);
    SUCCEEDS(shell(u"q import Plant PU pages --new-book Pumps && "
                   "q import --new-book Öl -- '--Öl (50 %)' OE pages && q list | head -1"_s),
             0);
    const Run left = shell(u"q import Plant PU notes.bin pages"_s);
    QCOMPARE(left.status, 2);
    QVERIFY2(left.out.startsWith(server.path(u"notes.bin"_s) + u": "_s), qPrintable(left.out));

    // What is printed never gets into a file that took the number of a closed stream.
    for (const auto heard : {"<&-"_L1, "2>&-"_L1})
        SUCCEEDS(shell(u"q rank Plant=7 "_s + heard), 0);
    for (const auto lost : {">&-"_L1, "<&- >&- 2>&-"_L1, ">/dev/full"_L1})
        SUCCEEDS(shell(u"q rank Plant=7 "_s + lost), 1);
    SUCCEEDS(shell(u"env -u HOME -u QUOVANE_SETTINGS \"$0\" --server \"$S\" list"_s), 0);

    const Run both =
        shell(u"for n in 1 2 3 4; do q new A$n --id A & q rank Plant=$n & q build Plant & "
              "done >/dev/null; wait; q list --json"_s);
    QStringList names = namesIn(both);
    names.sort();
    QCOMPARE(names.mid(names.indexOf(u"A1"_s)),
             (QStringList{u"A1"_s, u"A2"_s, u"A3"_s, u"A4"_s, u"Plant"_s}));
    SUCCEEDS(shell(u"q build Plant && q pack Plant --release"_s), 0);

    QFile catalogue(server.docs(u"QV_Selection.xml"_s));
    QVERIFY(catalogue.open(QFile::WriteOnly | QFile::Truncate));
    const Run unreadable = server({u"new"_s, u"B"_s, u"--id"_s, u"B"_s});
    QCOMPARE(unreadable.err, catalogue.fileName() + u" cannot be read: it is empty\n"_s);
}

void tst_qvdev::stopsAtCtrlC()
{
#ifndef Q_OS_UNIX
    QSKIP("No other program can press it here.");
#else
    const Server server;
    server.putPages(u"many"_s, 400);
    SUCCEEDS(server({u"new"_s, u"Plant"_s, u"--id"_s, u"P1"_s}), 0);
    SUCCEEDS(server({u"import"_s, u"Plant"_s, u"PU"_s, server.path(u"many"_s), u"--new-book"_s,
                     u"Pumps"_s}),
             0);
    QProcess building;
    server.start(building, {u"--server"_s, server.path(u"server"_s), u"build"_s, u"Plant"_s});
    waitUntilItListens(building);
    ::kill(static_cast<pid_t>(building.processId()), SIGINT);
    const Run unbuilt = ended(building);
    QCOMPARE(unbuilt.status, 1);
    QVERIFY2(unbuilt.err.startsWith("Stopped. What had run to its end is done"_L1),
             qPrintable(unbuilt.err));
    SUCCEEDS(server({u"release"_s, u"Plant"_s}), 1);
    SUCCEEDS(server({u"build"_s, u"Plant"_s, u"--no-checks"_s}), 0);
    SUCCEEDS(server({u"release"_s, u"Plant"_s}), 0);

    QProcess copying;
    server.start(copying, {u"--server"_s, server.path(u"server"_s), u"copy"_s, u"Plant"_s,
                           u"Second"_s, u"--id"_s, u"S"_s});
    while (copying.state() != QProcess::NotRunning
           && QDir(server.docs()).entryList({u"Second.*"_s}).isEmpty())
        copying.waitForFinished(0);
    ::kill(static_cast<pid_t>(copying.processId()), SIGINT);
    const Run stopped = ended(copying);
    QCOMPARE(stopped.status, 1);
    QCOMPARE(stopped.err, u"Stopped.\n"_s);
    QVERIFY(QDir(server.docs()).entryList({u"Second*"_s}).isEmpty());
    QCOMPARE(namesIn(server({u"list"_s, u"--json"_s})), QStringList{u"Plant"_s});
#endif
}

void tst_qvdev::explainsItself()
{
    const Server server;
    const auto read = [](const char *path) {
        QFile file{QLatin1StringView(path)};
        return file.open(QFile::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
    };
    const QString manual = read(QVDEV_MANUAL).remove(u'\\');
    const auto matches = [](const QString &text, const QString &pattern) {
        QStringList found;
        const QRegularExpression expression(pattern, QRegularExpression::MultilineOption);
        for (const QRegularExpressionMatch &match : expression.globalMatch(text))
            found.append(match.captured(1));
        return found;
    };
    const QStringList commands = matches(server.run({u"help"_s}).out, u"^  ([a-z][a-z-]*) "_s);
    QCOMPARE(commands.size(), 16);
    for (const QString &command : commands) {
        QVERIFY2(manual.contains(QRegularExpression(u"^\\.BI?R? "_s + command + u"\\b"_s,
                                                    QRegularExpression::MultilineOption)),
                 qPrintable(command));
        if (command == "help"_L1)
            continue;
        const Run help = server.run({u"help"_s, command});
        QVERIFY(help.status == 0 && help.out.startsWith(u"usage: qvdev "_s + command));
        for (const QString &option : matches(help.out, u" (--[a-z-]+)"_s))
            QVERIFY2(manual.contains(option), qPrintable(command + u' ' + option));
    }

#ifdef Q_OS_UNIX
    QProcess shell;
    server.start(shell, {}); // for its environment
    ended(shell);
    shell.start(u"bash"_s,
                {u"-c"_s, u"PATH=%1:$PATH; source %2; COMP_WORDS=(qvdev ''); COMP_CWORD=1; _qvdev; "
                          "echo \"${COMPREPLY[@]}\"; COMP_WORDS=(qvdev pack --); COMP_CWORD=2; "
                          "_qvdev; echo \"${COMPREPLY[@]}\""_s.arg(
                              QFileInfo(program).path(), QStringLiteral(QVDEV_COMPLETION))});
    const Run completed = ended(shell);
    QCOMPARE(completed.out.section(u'\n', 0, 0), commands.join(u' '));
    QVERIFY(completed.out.section(u'\n', 1, 1).startsWith("--with-sources --release "_L1));
#endif
}

void tst_qvdev::migrates()
{
    if (!QFile::exists(QFileInfo(program).path() + u"/qv_dbtoxml"_s))
        QSKIP("the converter is not built here");
    const Server server;
    const Run migrated = server({u"migrate"_s, QFINDTESTDATA("data/legacy/legacy_plant.mdb"),
                                 u"Old"_s, u"--id"_s, u"O"_s, u"--json"_s});
    QVERIFY2(migrated.status == 0 || migrated.status == 2, qPrintable(migrated.err));
    QCOMPARE(migrated.json()["problems"_L1].toArray().isEmpty(), migrated.status == 0);
    QVERIFY(!migrated.json()["tables"_L1].toArray().isEmpty());
    QCOMPARE(namesIn(server({u"list"_s, u"--json"_s})), QStringList{u"Old"_s});
    QVERIFY(server({u"build"_s, u"Old"_s, u"--json"_s}).json()["success"_L1].toBool());
}

QTEST_GUILESS_MAIN(tst_qvdev)
#include "tst_qvdev.moc"
