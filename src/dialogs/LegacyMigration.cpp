#include "dialogs/LegacyMigration.h"

#include "catalogue/NameClaim.h"
#include "catalogue/StatusIndicators.h"
#include "components/Categories.h"
#include "components/Components.h"
#include "components/DatabaseConverter.h"
#include "components/RegistryAccess.h"
#include "components/SearchWordsBuilder.h"
#include "dialogs/FirstLines.h"
#include "platform/Messages.h"
#include "platform/Paths.h"
#include "platform/QvError.h"
#include "projectfiles/GrowingFolder.h"
#include "resources/Texts.h"
#include "startup/Session.h"
#include "tools/migration/MigrationLog.h"

using namespace Qt::StringLiterals;

namespace {

QString line(const ConversionProblem &problem)
{
    constexpr qsizetype longest = 200;
    QStringList where{problem.table, problem.row};
    where.removeAll(QString());
    const QString text = where.join(u", "_s) + (where.isEmpty() ? u""_s : u": "_s) + problem.text;
    return text.size() > longest ? text.first(longest) + u"..."_s : text;
}

} // namespace

LegacyMigration::LegacyMigration(Program &program)
    : m_program(program)
{
}

const ConversionReport &LegacyMigration::report() const
{
    return m_program.components.databaseConverter.report();
}

bool LegacyMigration::convert(const QString &database, const Runner &run)
{
    runConverter(database, false, run);
    if (report().end == ConversionEnd::PartlyReadable) {
        if (!wantsWhatCanBeRead())
            return false;
        runConverter(database, true, run);
    }
    if (!m_program.components.databaseConverter.completed()) {
        m_program.messages.show(
            {.text = reason(), .title = text(Text::DialogTitle), .icon = MessageIcon::Critical});
        return false;
    }
    takeNameFromDestination();
    requireCategories();
    return true;
}

// A converter that is ended between its last two steps leaves all but the entry in the list.
QString LegacyMigration::reason()
{
    const bool isWhole = report().end == ConversionEnd::BrokenOff
                         && m_program.files.fileExists(folder() + ProjectFile::toc);
    return isWhole
               ? u"The converter ended before it could list the project, but the folder %1 is "
                 "complete. Migrate once more under this name, and let the folder be listed."_s.arg(
                     withoutBackslash(folder()))
               : report().reason;
}

void LegacyMigration::runConverter(const QString &database, bool acceptPartly, const Runner &run)
{
    const Session &session = m_program.session;
    const ConversionOrder order{.mode = u"1"_s,
                                .database = database,
                                .targetFolder = withoutBackslash(folder()),
                                .projectName = session.projectName,
                                .projectId = session.projectId,
                                .language = session.projectLanguage,
                                .acceptPartly = acceptPartly};
    DatabaseConverter &converter = m_program.components.databaseConverter;
    run([&](const Progress &progress) {
        try {
            converter.convert(order, progress);
        } catch (const Unwinding &) {
            removeRemains();
            throw;
        }
        if (!converter.completed())
            removeRemains();
    });
}

// It removes what it made when it comes to an end of its own. Who holds the name now makes a
// project of it.
void LegacyMigration::removeRemains()
{
    const QString place = withoutBackslash(folder());
    trap([](const QvError &) {}, // the next project of this name removes it
         [&] {
             const NameClaim claim(m_program.files, place);
             GrowingFolder(m_program.files, place).discard();
         });
}

bool LegacyMigration::wantsWhatCanBeRead()
{
    QStringList lines;
    for (const ConversionProblem &problem : report().problems)
        lines.append(line(problem));
    const Choice question{.text = report().reason + u"\n\n"_s + firstOf(lines),
                          .answers = {u"&Migrate What Can Be Read"_s, u"&Cancel"_s},
                          .initial = 1,
                          .title = text(Text::DialogTitle)};
    return m_program.messages.choose(question) == 0;
}

// The converter may have chosen another folder than the one it was given.
void LegacyMigration::takeNameFromDestination()
{
    const QString &serverPath = m_program.session.serverPath;
    const QString written = report().folder;
    const QString stored = withoutBackslash(destination());
    if (stored.isEmpty() || stored.compare(written, Qt::CaseInsensitive) != 0)
        throw QvError(InvalidCall, {},
                      u"The converter wrote the project to %1, but the setting \"Path\" of %2 "
                      "names %3. The project is complete and in the list of "
                      "projects"_s.arg(written, RegistryKey::compiler + u"Destination"_s,
                                       stored.isEmpty() ? u"no folder"_s : stored));
    if (parentFolder(stored).compare(docsFolder(serverPath), Qt::CaseInsensitive) != 0)
        throw QvError(PathFileAccess, {},
                      u"The converter wrote the project to %1, which is no folder directly below "
                      "%2. Move it there, and add a new project of its name to list it"_s.arg(
                          stored, docsFolder(serverPath)));
    const QString name = lastComponent(stored);
    (void)existingProjectFolder(m_program.files, serverPath, name);
    m_program.session.projectName = name;
}

QString LegacyMigration::destination()
{
    QString stored;
    trap([](const QvError &) {}, // without the setting there is none
         [&] {
             stored = m_program.components.registryAccess.vGetValueName(
                 Hive::LocalMachine, RegistryKey::compiler + u"Destination"_s, u"Path"_s);
         });
    return stored;
}

void LegacyMigration::requireCategories()
{
    Categories &categories = m_program.components.categories;
    const QString path = folder() + ProjectFile::categories;
    if (categories.isUsable(path))
        return;
    categories.open(docsFolder(m_program.session.serverPath), false, {}, path);
    categories.write(path);
}

void LegacyMigration::makeSearchWords(const Runner &run)
{
    const auto tell = [this](const QString &what, const QString &reason) {
        m_program.messages.show(
            {.text = what + u" The project itself is complete: its next build makes them."_s,
             .title = text(Text::DialogTitle),
             .details = reason});
    };
    const auto failed = [&](const QvError &error) {
        tell(u"The search words could not be made."_s, error.description());
    };
    const auto work = [this](const Progress &progress) {
        m_program.components.searchWords.mGet_Words(folder() + ProjectFile::toc, progress);
    };
    try {
        trap(failed, [&] { run(work); });
    } catch (const Unwinding &unwinding) {
        if (unwinding.reason != Unwinding::Reason::Stopped)
            throw;
        tell(u"Making the search words was stopped."_s, {});
    }
}

void LegacyMigration::makeCurrent()
{
    StatusIndicators(m_program.session, m_program.files, m_program.currentProject).AddProjectName();
}

QString LegacyMigration::logPath() const
{
    return folder() + migrationLogFile;
}

QString LegacyMigration::folder() const
{
    return projectFolder(m_program.session.serverPath, m_program.session.projectName);
}
