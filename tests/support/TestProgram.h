#pragma once

#include "ProductComponents.h"
#include "catalogue/ProjectCatalogue.h"
#include "platform/Clock.h"
#include "platform/DesktopWindows.h"
#include "platform/Messages.h"
#include "platform/Processes.h"
#include "platform/ProgramEnd.h"
#include "platform/Progress.h"
#include "platform/QvError.h"
#include "platform/SystemLocale.h"
#include "platform/native/NativeFiles.h"
#include "startup/CurrentProject.h"
#include "startup/Navigator.h"
#include "startup/Program.h"
#include "startup/Session.h"

#include <QDir>
#include <QFileInfo>
#include <QLocale>
#include <QMap>
#include <QTemporaryDir>

// The scripted world of the tests: real files below a fresh temporary folder, which the program
// sees as drive S:, and everything else in memory.

/// Answers come from a list; a question nobody scripted is noted and answered as if closed.
class ScriptedMessages final : public Messages
{
public:
    QList<Answer> answers;
    QList<int> choices;
    QStringList shown; ///< texts in order, choices included
    QList<Message> boxes;
    QStringList unexpected;
    std::function<void(const QStringList &)> echo; ///< hears of every box, if set

    Answer show(const Message &message) override
    {
        if (echo)
            echo({message.text, message.details});
        shown.append(message.text);
        boxes.append(message);
        if (message.buttons == Buttons::Ok)
            return Answer::Ok;
        if (!answers.isEmpty())
            return answers.takeFirst();
        unexpected.append(message.text);
        return message.buttons == Buttons::YesNo ? Answer::No : Answer::Cancel;
    }
    int choose(const Choice &choice) override
    {
        if (echo)
            echo({choice.text});
        shown.append(choice.text);
        if (!choices.isEmpty())
            return choices.takeFirst();
        unexpected.append(choice.text);
        return static_cast<int>(choice.answers.size()) - 1;
    }
};

class ScriptedDialogs final : public FileDialogs
{
public:
    QStringList paths;     ///< what the author picks, one after the other
    QStringList startedIn; ///< folders the dialogs opened in

    QString openFile(const QString &, const QString &folder, const QString &) override
    {
        startedIn.append(folder);
        return paths.isEmpty() ? QString() : paths.takeFirst();
    }
    QStringList openFiles(const QString &title, const QString &folder,
                          const QString &filter) override
    {
        const QString one = openFile(title, folder, filter);
        return one.isEmpty() ? QStringList() : QStringList{one};
    }
    QString saveFile(const QString &title, const QString &path, const QString &filter) override
    {
        return openFile(title, path, filter);
    }
    QString chooseFolder(const QString &title, const QString &folder) override
    {
        return openFile(title, folder, {});
    }
};

class MemoryRegistry final : public Registry
{
public:
    QMap<QString, QString> values; ///< "<hive as hex> <key> <name>" in lower case
    bool refuses = false;

    static QString place(Hive hive, const QString &key, const QString &name)
    {
        return (QString::number(static_cast<quint32>(hive), 16) + u' ' + key + u' ' + name)
            .toLower();
    }
    std::optional<QString> value(Hive hive, const QString &key, const QString &name) override
    {
        const auto found = values.constFind(place(hive, key, name));
        return found == values.constEnd() ? std::nullopt : std::optional(*found);
    }
    bool setValue(Hive hive, const QString &key, const QString &name, const QString &text) override
    {
        if (!refuses)
            values.insert(place(hive, key, name), text);
        return !refuses;
    }
};

class NotedProcesses final : public Processes
{
public:
    QStringList started; ///< "program|argument|argument"
    QStringList opened;
    bool missing = false;

    void start(const QString &program, const QStringList &arguments) override
    {
        if (missing)
            throw QvError(FileNotFound, {}, QStringLiteral("File not found: ") + program);
        started.append((QStringList{program} + arguments).join(u'|'));
    }
    /// What programs that are waited for do; notes them by default.
    std::function<ProcessEnd(const std::function<void(const QByteArray &)> &line)> runs = {};
    std::stop_token stop; ///< of the last one
    ProcessEnd run(const QString &program, const QStringList &arguments, const ProcessLimits &,
                   const std::stop_token &token,
                   const std::function<void(const QByteArray &)> &line) override
    {
        start(program, arguments);
        stop = token;
        return runs ? runs(line) : ProcessEnd();
    }
    void openText(const QString &path) override { opened.append(path); }
    void openPage(const QString &path) override { opened.append(path); }
};

class ScriptedWindows final : public DesktopWindows
{
public:
    QStringList open;           ///< captions
    QStringList raised, closed; ///< "caption|kind|topic", "class|caption"
    bool running = false;

    bool exists(const QString &, const QString &caption) override { return open.contains(caption); }
    void raiseMaximized(const QString &caption, const QString &kind, const QString &topic) override
    {
        raised.append(QStringList{caption, kind, topic}.join(u'|'));
    }
    void close(const QString &className, const QString &caption) override
    {
        closed.append(className + u'|' + caption);
    }
    bool previousInstance() override { return running; }
};

/// Moves on by half a second at every look, so that waiting loops end at once.
class SteppingClock final : public Clock
{
public:
    QDateTime time{QDate(2026, 3, 14), QTime(9, 30)};
    std::chrono::milliseconds elapsed{0};

    QDateTime now() override { return time; }
    std::chrono::milliseconds monotonic() override
    {
        return elapsed += std::chrono::milliseconds(500);
    }
};

class FixedLocale final : public SystemLocale
{
public:
    QString shortDate(QDate date) override { return date.toString(QStringLiteral("M/d/yyyy")); }
    QDate fromShortDate(const QString &text) override
    {
        return QDate::fromString(text, QStringLiteral("M/d/yyyy"));
    }
    bool isNumeric(const QString &text) override
    {
        bool ok = false;
        QLocale::c().toDouble(text.trimmed(), &ok);
        return ok;
    }
};

/// Notes that the program ended and leaves the handler.
class NotedEnd final : public ProgramEnd
{
public:
    int ended = 0;
    bool atOnce = false; ///< the end comes the moment something is registered for it
    QList<std::function<void()>> last;

    void endNow() override
    {
        ++ended;
        for (const auto &job : std::as_const(last)) {
            if (job)
                job();
        }
        throw Unwinding{Unwinding::Reason::ProgramEnds};
    }
    int before(std::function<void()> job) override
    {
        if (atOnce)
            job();
        last.append(std::move(job));
        return static_cast<int>(last.size()) - 1;
    }
    void forget(int number) override { last[number] = nullptr; }
};

class NotedNavigator final : public Navigator
{
public:
    QList<Form> shown, closed;
    int loadforms = 0;

    void show(Form form) override { shown.append(form); }
    QStringList opened;
    void loadform() override { ++loadforms; }
    void openProject(const QString &name) override { opened.append(name); }
    bool unload(Form form) override
    {
        closed.append(form);
        return true;
    }
};

class NotedCurrentProject final : public CurrentProject
{
public:
    QStringList handed; ///< "name|language"
    void handOver(const QString &name, const QString &language) override
    {
        handed.append(name + u'|' + language);
    }
};

/// An author who presses Stop.
class Stopper
{
public:
    /// A progress that is stopped at the first step of which `reached` is true.
    Progress when(const std::function<bool(int done, const QString &what)> &reached)
    {
        return {[this, reached](int done, int, const QString &what) {
                    if (reached(done, what))
                        m_source.request_stop();
                },
                m_source.get_token()};
    }
    bool pressed() const { return m_source.stop_requested(); }

private:
    std::stop_source m_source;
};

/// The program over the drives in a folder, without windows of its own.
class ScriptedProgram
{
public:
    explicit ScriptedProgram(const QString &drives)
        : files(drives)
    {
    }

    NativeFiles files;
    Session session;
    MemoryRegistry registry;
    NotedProcesses processes;
    ScriptedWindows windows;
    SteppingClock clock;
    ScriptedMessages messages;
    ScriptedDialogs dialogs;
    FixedLocale locale;
    NotedEnd ending;
    NotedNavigator navigator;
    NotedCurrentProject currentProject;

    ProductComponents parts{session, registry, windows, files, processes, messages};
    Components &components = parts.all;
    Program program{session, files,  registry, processes, windows,        clock,     messages,
                    dialogs, locale, ending,   navigator, currentProject, components};
};

struct TestFolder
{
    QTemporaryDir folder;
};

/// One per test function. `world.server` is "S:\"; `world.native("Docs")` is where it really lies.
class TestProgram : public TestFolder, public ScriptedProgram
{
public:
    const QString server = QStringLiteral("S:\\");

    TestProgram()
        : ScriptedProgram(folder.path())
    {
        QDir(folder.path()).mkpath(QStringLiteral("s/Docs"));
        QDir(folder.path()).mkpath(QStringLiteral("c/Client/Bin"));
        session.serverPath = server;
        session.clientBinPath = QStringLiteral("C:\\Client\\Bin\\");
        parts.registryAccess.SetQVServer(server);
        registry.setValue(Hive::LocalMachine, RegistryKey::product, QStringLiteral("Client"),
                          QStringLiteral("C:\\Client\\"));
    }

    /// The machine's path of something below the server folder.
    QString native(const QString &below) const
    {
        return QDir::toNativeSeparators(folder.filePath(QStringLiteral("s/") + below));
    }
    QByteArray bytes(const QString &productPath) { return files.readFile(productPath); }
    /// Writes a file, in a new folder if need be.
    void put(const QString &productPath, const QByteArray &content)
    {
        QDir().mkpath(QFileInfo(files.nativePath(productPath)).path());
        files.replaceFile(productPath, content);
    }
    /// The names directly in a folder.
    QStringList below(const QString &path)
    {
        QStringList names;
        for (const FolderEntry &entry : files.entries(path))
            names.append(entry.name);
        return names;
    }
    /// Puts a project into the catalogue, which is made if need be.
    void list(const QString &project)
    {
        session.projectName = project;
        ProjectCatalogue catalogue(session, files);
        if (catalogue.bCheckQVSelectionforProdName())
            catalogue.UpdateQVSelection();
    }
};
