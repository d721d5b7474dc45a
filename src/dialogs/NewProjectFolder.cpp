#include "dialogs/NewProjectFolder.h"

#include "catalogue/ProjectCatalogue.h"
#include "catalogue/NameClaim.h"
#include "platform/Clock.h"
#include "platform/Messages.h"
#include "platform/Paths.h"
#include "platform/ProgramEnd.h"
#include "platform/QvError.h"
#include "platform/TreeWalker.h"
#include "resources/Texts.h"
#include "startup/FileHelpers.h"
#include "startup/Session.h"

using namespace Qt::StringLiterals;

NewProjectFolder::NewProjectFolder(Program &program)
    : m_program(program)
{
}

QString NewProjectFolder::place() const
{
    return withoutBackslash(
        projectFolder(m_program.session.serverPath, m_program.session.projectName));
}

QString NewProjectFolder::growing() const
{
    return place() + u".qvnew"_s;
}

QString NewProjectFolder::path() const
{
    return m_isInPlace ? place() : growing();
}

QString NewProjectFolder::inPlace(QString line) const
{
    return line.replace(growing() + u'\\', place() + u'\\');
}

bool NewProjectFolder::isUnused()
{
    FileSystem &files = m_program.files;
    return !files.folderExists(place()) || files.entries(place()).isEmpty();
}

NewProjectFolder::Answer NewProjectFolder::settle()
{
    if (isUnused())
        return Answer::MakeNew;
    const Choice question{
        u"The folder %1 is already there with files in it, but no project of this name is in the "
        "list of projects.\n\nList it again to go on with what is in it. Or move it aside: it is "
        "renamed, and the new project gets a folder of its own. Nothing in it is changed."_s.arg(
            place()),
        {u"List It Again"_s, u"Move It Aside and Start New"_s, u"Cancel"_s}};
    switch (m_program.messages.choose(question)) {
    case 0:
        return Answer::ListAgain;
    case 1:
        moveAside();
        return Answer::MakeNew;
    default:
        return Answer::Cancel;
    }
}

// Another author may have listed the folder while the question was open.
void NewProjectFolder::moveAside()
{
    const QString folder = place();
    const NameClaim claim(m_program.files, folder);
    if (!ProjectCatalogue(m_program.session, m_program.files).bCheckQVSelectionforProdName())
        raiseExists();
    const QString base = parentFolder(folder) + shortened(lastComponent(folder), 220)
                         + u" (moved aside "_s + m_program.clock.now().date().toString(Qt::ISODate);
    QString target = base + u')';
    for (int number = 2; m_program.files.exists(target); ++number)
        target = base + u' ' + QString::number(number) + u')';
    m_program.files.move(folder, target);
}

// Another author may have made the project since its name was found to be free.
void NewProjectFolder::make()
{
    if (!isUnused())
        raiseExists();
    FileHelpers(m_program.session, m_program.files).mbCreateFilePath(place());
}

void NewProjectFolder::startGrowing()
{
    m_wasThere = m_program.files.folderExists(place());
    make();
    if (m_program.files.exists(growing()))
        deleteTree(m_program.files, growing());
}

void NewProjectFolder::putInPlace(const Progress &progress)
{
    progress.step(0, 0); // busy for a while
    m_program.files.syncTree(growing());
    progress.step(1, 1);
    move();
    m_program.files.syncFolder(withoutBackslash(docsFolder(m_program.session.serverPath)));
}

void NewProjectFolder::move()
{
    m_program.files.removeFolder(place());
    m_program.files.move(growing(), place());
    m_isInPlace = true;
}

void NewProjectFolder::leaveInPlace()
{
    const auto asFarAsItGoes = [](const QvError &) {}; // it stays beside its place then
    trap(asFarAsItGoes, [this] { m_program.files.syncTree(path()); });
    if (!m_isInPlace)
        trap(asFarAsItGoes, [this] { move(); });
}

void NewProjectFolder::discard()
{
    FileSystem &files = m_program.files;
    trap([](const QvError &) {}, // what stopped the work is told
         [&] {
             if (files.exists(path()))
                 deleteTree(files, path());
             if (!m_isInPlace && !m_wasThere)
                 files.removeFolder(place());
         });
}

void NewProjectFolder::raiseExists() const
{
    throw QvError(InvalidCall, {},
                  text(Text::ProjectAlreadyExists) + u": "_s + m_program.session.projectName);
}

void endAfterFailedCopy(Program &program, const CopyFailure &failure)
{
    program.messages.show({.text = text(Text::AtLocation) + u' ' + NewProjectFolder(program).place()
                                   + u'\n' + text(Text::ReasonNoSpaceOrPermission),
                           .icon = MessageIcon::Critical,
                           .details = failure.reason});
    program.ending.endNow();
}
