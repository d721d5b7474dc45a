#include "controls/session/LockedFiles.h"

#include "platform/Messages.h"
#include "platform/QvError.h"

#include <QCoreApplication>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype listed = 15;

QString tr(const char *text)
{
    return QCoreApplication::translate("LockedFiles", text);
}

} // namespace

bool mayUnlock(const ProjectSession &session, const QStringList &locked)
{
    if (locked.isEmpty())
        return true;
    QString names = locked.first(qMin(listed, locked.size())).join(u'\n');
    if (locked.size() > listed)
        names += u'\n' + tr("and %1 more").arg(locked.size() - listed);
    const int answer = session.program().messages.choose(
        {tr("These files are locked against changes:\n%1").arg(names),
         {tr("&Unlock them and go on"), tr("Cancel")}});
    return answer == 0;
}

QStringList lockedBy(const ProjectSession &session, const FileChanges &changes)
{
    QStringList locked;
    for (const ExpectedFile &file : changes.expected) {
        if (file.bytes && session.program().files.status(session.folder() + file.path).readOnly)
            locked.append(file.path);
    }
    return locked;
}

UnlockedFiles::UnlockedFiles(const ProjectSession &session)
    : m_files(session.program().files)
    , m_folder(session.folder())
{
}

UnlockedFiles::~UnlockedFiles()
{
    for (const QString &path : std::as_const(m_paths))
        trap([](const QvError &) {}, // it stays unlocked, which loses nothing
             [&] { m_files.setAttributes(path, m_files.attributes(path) | ReadOnlyFile); });
}

void UnlockedFiles::unlock(const QStringList &files)
{
    for (const QString &file : files) {
        const QString path = m_folder + file;
        m_files.setAttributes(path, m_files.attributes(path) & ~ReadOnlyFile);
        m_paths.append(path);
    }
}
