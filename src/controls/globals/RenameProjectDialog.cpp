#include "controls/globals/RenameProjectDialog.h"

#include "controls/globals/ProjectNaming.h"
#include "controls/parts/CheckedField.h"
#include "controls/parts/Handler.h"
#include "controls/parts/PlainLabel.h"
#include "controls/parts/Tables.h"
#include "controls/session/LockedFiles.h"
#include "projectfiles/TableOfContents.h"
#include "resources/Counted.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>

using namespace Qt::StringLiterals;

namespace {

RenameSurvey surveyOf(ProjectSession &session)
{
    RenameSurvey survey;
    const QString name = session.projectName();
    session.runLong(RenameProjectDialog::tr("Looking at the project..."),
                    [&](const Progress &progress) {
                        survey = surveyRename(session.program(), name, name, progress);
                    });
    return survey;
}

} // namespace

RenameProjectDialog::RenameProjectDialog(ProjectSession &session, QWidget *parent)
    : QDialog(parent)
    , m_session(session)
    , m_survey(surveyOf(session))
    , m_prefix(ProjectNaming(session).prefix())
    , txtName(new CheckedField(
          u"txtNewProjectName"_s, tr("New name of the project"),
          [this](const QString &typed) { return ProjectNaming(m_session).problemOfName(typed); },
          {}, this))
    , tvwChanges(
          makeTable(u"tvwChanges"_s, tr("What will change"), {tr("What will change")}, 0, this))
    , chkOthers(new QCheckBox(tr("Correct the &links of other projects, too"), this))
    , cmdRename(new QPushButton(this))
{
    setWindowTitle(tr("Rename project"));
    setObjectName(u"RenameProjectDialog"_s);
    layOut();
    connect(txtName, &CheckedField::edited, this, &RenameProjectDialog::judge);
    connect(chkOthers, &QCheckBox::toggled, this, &RenameProjectDialog::listChanges);
    txtName->setText(m_session.projectName().sliced(m_prefix.size()));
    judge();
}

void RenameProjectDialog::layOut()
{
    auto *name = new QHBoxLayout;
    if (!m_prefix.isEmpty())
        name->addWidget(plainLabel(m_prefix, this));
    name->addWidget(txtName, 1);
    auto *form = new QFormLayout;
    auto *label = new QLabel(tr("New &name:"), this);
    label->setBuddy(txtName);
    form->addRow(label, name);

    tvwChanges->setRootIsDecorated(true);
    chkOthers->setObjectName(u"chkOthers"_s);
    chkOthers->setChecked(!m_survey.others.isEmpty());
    chkOthers->setVisible(!m_survey.others.isEmpty());
    cmdRename->setObjectName(u"cmdRename"_s);
    cmdRename->setText(m_survey.locked.isEmpty()
                           ? tr("&Rename")
                           : counted(m_survey.locked.size(), tr("&Unlock 1 file and rename"),
                                     tr("&Unlock %1 files and rename")));
    auto *buttons = new QDialogButtonBox(this);
    buttons->addButton(cmdRename, QDialogButtonBox::AcceptRole);
    buttons->addButton(QDialogButtonBox::Cancel);
    cmdRename->setDefault(true);
    connect(buttons, &QDialogButtonBox::accepted, this, &RenameProjectDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &RenameProjectDialog::reject);

    auto *layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(tvwChanges);
    layout->addWidget(chkOthers);
    layout->addWidget(plainLabel(tr("Other authors must have closed the project. Renaming is not "
                                    "undone with Undo: rename the project back instead."),
                                 this));
    layout->addWidget(buttons);
    const int letter = fontMetrics().averageCharWidth();
    resize(90 * letter, 28 * fontMetrics().lineSpacing());
    txtName->setFocus();
}

void RenameProjectDialog::judge()
{
    const QString problem = txtName->problem();
    cmdRename->setEnabled(problem.isEmpty());
    cmdRename->setToolTip(problem);
    listChanges();
}

void RenameProjectDialog::listChanges()
{
    const QString &old = m_session.projectName();
    const QString now = m_prefix + txtName->text();
    const auto [platform, variation] =
        splitProjectName(txtName->text(), m_session.program().locale);
    tvwChanges->clear();
    addLine(tr("Folder: Docs\\%1 becomes Docs\\%2").arg(old, now));
    addLine(tr("List of projects: %1 becomes %2").arg(old, now));
    addLine(tr("Table of contents: platform \"%1\", variation \"%2\"").arg(platform, variation));
    addLine(counted(m_survey.books.size(), tr("Keys in 1 book file"), tr("Keys in %1 book files")),
            m_survey.books);
    if (!m_survey.pages.isEmpty())
        addLine(tr("**%1** becomes **%2** in %3")
                    .arg(old, now, counted(m_survey.pages.size(), tr("1 page"), tr("%1 pages"))),
                m_survey.pages);
    if (m_survey.hasLinks)
        addLine(tr("Folders in the project's link file"));
    if (!m_survey.packed.isEmpty())
        addLine(tr("The packed copy is deleted; the next build makes a new one"), m_survey.packed);
    QStringList others;
    for (const RenameSurvey::Links &links : std::as_const(m_survey.others))
        others.append(
            u"%1: %2"_s.arg(links.project.isEmpty() ? u"Docs\\QV_LinkID.xml"_s : links.project,
                            counted(links.count, tr("1 path"), tr("%1 paths"))));
    if (!others.isEmpty())
        addLine(chkOthers->isChecked() ? tr("Links of other projects that lead here")
                                       : tr("Links of other projects that will lead nowhere"),
                others);
    if (!m_survey.locked.isEmpty())
        addLine(tr("Locked files that will be unlocked"), m_survey.locked);
    if (!m_survey.remarks.isEmpty())
        addLine(tr("What cannot be read and stays as it is"), m_survey.remarks);
}

void RenameProjectDialog::addLine(const QString &text, const QStringList &details)
{
    QTreeWidgetItem *line = addRow(tvwChanges, {text}, text);
    for (const QString &detail : details) {
        auto *row = new QTreeWidgetItem(line, {detail});
        row->setToolTip(0, detail);
    }
}

void RenameProjectDialog::accept()
{
    if (!txtName->problem().isEmpty())
        return;
    const bool renamed = handled(m_session.program(), [&] {
        UnlockedFiles unlocked(m_session);
        unlocked.unlock(m_survey.locked);
        if (!ProjectNaming(m_session).rename(txtName->text(), chkOthers->isChecked()))
            return false;
        unlocked.keep();
        return true;
    });
    if (renamed)
        QDialog::accept();
}
