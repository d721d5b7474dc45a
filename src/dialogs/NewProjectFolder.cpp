#include "dialogs/NewProjectFolder.h"

#include "catalogue/NameClaim.h"
#include "catalogue/ProjectCatalogue.h"
#include "platform/Clock.h"
#include "platform/Messages.h"
#include "platform/Paths.h"
#include "platform/ProgramEnd.h"
#include "platform/QvError.h"
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

QString NewProjectFolder::inPlace(QString line) const
{
    return line.replace(m_folder->growing() + u'\\', place() + u'\\');
}

bool NewProjectFolder::isUnused()
{
    return GrowingFolder(m_program.files, place()).isUnused();
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

GrowingFolder &NewProjectFolder::startGrowing()
{
    m_folder.emplace(m_program.files, place());
    m_folder->begin([this] { make(); });
    return *m_folder;
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
