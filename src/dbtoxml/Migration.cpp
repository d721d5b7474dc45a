#include "dbtoxml/Migration.h"

#include "catalogue/NameClaim.h"
#include "catalogue/ProjectCatalogue.h"
#include "components/RegistryAccessComponent.h"
#include "dbtoxml/EarlyEnd.h"
#include "dbtoxml/LegacyReader.h"
#include "dbtoxml/StoredContents.h"
#include "platform/Paths.h"
#include "platform/QvError.h"
#include "projectfiles/GlobalBook.h"
#include "projectfiles/GrowingFolder.h"
#include "startup/FileHelpers.h"
#include "tools/migration/ProjectWriter.h"

using namespace Qt::StringLiterals;

namespace {

constexpr auto wholeBookSet = "1"_L1; // the only mode

[[noreturn]] void refuse(const QString &reason)
{
    throw EarlyEnd{ConversionEnd::Refused, reason};
}

/// The installation of a project folder that lies directly below its "Docs".
QString serverPathOf(const QString &projectFolder)
{
    constexpr auto docs = "Docs\\"_L1;
    const QString parent = parentFolder(projectFolder);
    if (!parent.endsWith(u'\\' + docs, Qt::CaseInsensitive))
        refuse(u"%1 lies not directly in the folder Docs of an installation. Nothing was created. "
               "Choose a project folder there."_s.arg(projectFolder));
    return parent.chopped(docs.size());
}

void check(const ConversionOrder &order)
{
    if (order.mode != wholeBookSet)
        refuse(u"The converter has no mode \"%1\"; \"1\" migrates a whole book set."_s.arg(
            order.mode));
    if (order.projectId.isEmpty())
        refuse(u"The new project has no ID. Give it one."_s);
    if (!isSafeName(order.projectName))
        refuse(u"\"%1\" cannot be the name of a project. Choose another name."_s.arg(
            order.projectName));
    if (lastComponent(order.targetFolder) != order.projectName)
        refuse(u"The folder %1 is not that of a project named %2."_s.arg(order.targetFolder,
                                                                         order.projectName));
}

class Migration final
{
public:
    Migration(const MigrationWorld &world, const ConversionOrder &order)
        : m_world(world)
        , m_files(world.files)
        , m_order(order)
    {
        check(order);
        m_session.serverPath = serverPathOf(order.targetFolder);
        m_session.projectName = order.projectName;
        m_session.projectId = order.projectId;
        m_session.projectLanguage = order.language;
    }

    ConversionReport run(const Progress &progress)
    {
        const DatabaseFile database(m_files, m_order.database);
        LegacyFindings findings;
        LegacyBookSet set = readBookSet(database, findings, progress.piece(0, 2));
        set.problems = findings.damaged + findings.odd;
        StoredContents contents(database, set);
        if (mayGoOn(findings.damaged))
            return write(database, set, contents, progress);
        readToEnd(contents, progress.piece(1, 2));
        database.requireUnchanged();
        return partlyReadable(findings.damaged + contents.damaged());
    }

private:
    [[nodiscard]] bool mayGoOn(const QList<ConversionProblem> &damaged) const
    {
        return damaged.isEmpty() || m_order.acceptPartly;
    }

    // So that the author hears of all that is damaged.
    static void readToEnd(StoredContents &contents, const Progress &progress)
    {
        const auto pass = [&](qsizetype, const auto &) { progress.step(0, 1); };
        contents.pages(pass);
        contents.globalPages(pass);
        contents.images(pass);
    }

    [[nodiscard]] ConversionReport partlyReadable(const QList<ConversionProblem> &damaged) const
    {
        const QString places = damaged.size() == 1
                                   ? u"a piece of it cannot be read"_s
                                   : u"%1 pieces of it cannot be read"_s.arg(damaged.size());
        return {.end = ConversionEnd::PartlyReadable,
                .reason =
                    u"%1 is damaged: %2. Nothing was created. Repair it with the program it "
                    "was made with, take an older copy of it, or accept what can be read."_s.arg(
                        m_order.database, places),
                .folder = {},
                .counts = {},
                .problems = damaged};
    }

    ConversionReport write(const DatabaseFile &database, const LegacyBookSet &set,
                           StoredContents &contents, const Progress &progress)
    {
        const NameClaim claim(m_files, m_order.targetFolder);
        GrowingFolder folder(m_files, m_order.targetFolder);
        requireFreePlace(folder);
        ConversionReport report;
        try {
            report = grow(folder, set, contents, progress.piece(1, 2));
            database.requireUnchanged();
            if (!mayGoOn(contents.damaged())) {
                folder.discard();
                return partlyReadable(contents.damaged());
            }
            folder.putInPlace(progress);
        } catch (...) {
            folder.discard();
            throw;
        }
        list();
        report.end = ConversionEnd::Done;
        report.folder = m_order.targetFolder;
        return report;
    }

    void requireFreePlace(GrowingFolder &folder)
    {
        if (!ProjectCatalogue(m_session, m_files).bCheckQVSelectionforProdName())
            refuse(u"A project of the name %1 is already there. Nothing was created. Choose "
                   "another name."_s.arg(m_order.projectName));
        if (!folder.isUnused())
            refuse(u"The folder %1 is already there with files in it. Nothing was created. Choose "
                   "another name, or move the folder away."_s.arg(m_order.targetFolder));
    }

    ConversionReport grow(GrowingFolder &folder, const LegacyBookSet &set, StoredContents &contents,
                          const Progress &progress)
    {
        folder.begin(
            [&] { FileHelpers(m_session, m_files).mbCreateFilePath(m_order.targetFolder); });
        m_files.makeFolder(folder.growing());
        return writeProject(m_files, m_world.clock, m_world.locale,
                            {.folder = withBackslash(folder.growing()),
                             .serverPath = m_session.serverPath,
                             .name = m_order.projectName,
                             .id = m_order.projectId,
                             .language = m_order.language},
                            set, contents, progress);
    }

    // The last step: what is listed is complete.
    void list()
    {
        const auto onError = [this](const QvError &error) {
            throw EarlyEnd{ConversionEnd::Failed,
                           u"The book set was migrated into the folder %1, but it could not be "
                           "listed: %2. Add a project of the same name, and choose to list the "
                           "folder again."_s.arg(m_order.targetFolder, error.description())};
        };
        trap(onError, [this] {
            makeGlobalBookIfMissing(m_session, m_files, *makeGlobalInformation(m_files));
            RegistryAccessComponent(m_world.registry)
                .SetValueName(Hive::LocalMachine, RegistryKey::compiler + u"Destination"_s,
                              u"Path"_s, m_order.targetFolder);
            ProjectCatalogue(m_session, m_files).UpdateQVSelection();
        });
    }

    const MigrationWorld &m_world;
    FileSystem &m_files;
    const ConversionOrder &m_order;
    Session m_session;
};

ConversionReport endedEarly(ConversionEnd end, const QString &reason)
{
    return {.end = end, .reason = reason, .folder = {}, .counts = {}, .problems = {}};
}

} // namespace

ConversionReport migrate(const MigrationWorld &world, const ConversionOrder &order,
                         const Progress &progress)
{
    ConversionReport report;
    const auto onError = [&](const QvError &error) {
        report = endedEarly(ConversionEnd::Failed,
                            u"%1 was not migrated: %2. Nothing was created."_s.arg(
                                order.database, error.description()));
    };
    trap(onError, [&] {
        try {
            report = Migration(world, order).run(progress);
        } catch (const EarlyEnd &early) {
            report = endedEarly(early.end, early.reason);
        }
    });
    return report;
}
