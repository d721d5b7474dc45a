#include "platform/shared/IniRegistry.h"

#include "platform/Paths.h"
#include "platform/QvError.h"
#include "platform/shared/DrivesFolder.h"
#include "platform/shared/IniText.h"

#include <QStandardPaths>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto patience = 5s;

QString sectionOf(Hive hive, const QString &key)
{
    const auto root =
        hive == Hive::CurrentUser ? "HKEY_CURRENT_USER\\"_L1 : "HKEY_LOCAL_MACHINE\\"_L1;
    return root + withoutBackslash(key);
}

void makeFolders(FileSystem &files, const QString &folder)
{
    if (files.folderExists(folder))
        return;
    makeFolders(files, withoutBackslash(parentFolder(folder)));
    files.makeFolder(folder);
}

} // namespace

SettingsFolders settingsFolders()
{
    if (const QString both = qEnvironmentVariable("QUOVANE_SETTINGS"); !both.isEmpty())
        return {both, both};
    const QString home = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
#ifdef Q_OS_WIN
    const QString machine = qEnvironmentVariable("ProgramData", u"C:/ProgramData"_s);
#else
    const QString machine = u"/etc"_s;
#endif
    return {machine + u"/quovane"_s, home + u"/quovane"_s};
}

IniRegistry::IniRegistry(const QString &machineFile, const QString &userFile)
    : m_files(drivesFolder())
    , m_machineFile(m_files.productPath(machineFile))
    , m_userFile(m_files.productPath(userFile))
{
}

IniRegistry::IniRegistry(const SettingsFolders &folders)
    : IniRegistry(folders.machine + u"/machine.ini"_s, folders.user + u"/user.ini"_s)
{
}

std::optional<QString> IniRegistry::value(Hive hive, const QString &key, const QString &name)
{
    const Entry entry{sectionOf(hive, key), name};
    const auto own = read(m_userFile, entry);
    return own || hive == Hive::CurrentUser ? own : read(m_machineFile, entry);
}

bool IniRegistry::setValue(Hive hive, const QString &key, const QString &name, const QString &value)
{
    const Entry entry{sectionOf(hive, key), name};
    // A value of the user's own hides the machine's, so that is the one to change.
    const auto isTheUsers = [&] { return hive == Hive::CurrentUser || read(m_userFile, entry); };
    try {
        if (!isTheUsers() && write(m_machineFile, entry, value))
            return true;
        return write(m_userFile, entry, value);
    } catch (const QvError &) {
        return false; // the user's file cannot be read
    }
}

std::optional<QString> IniRegistry::read(const QString &file, const Entry &entry)
{
    return IniText(contentOf(file), file).value(entry.section, entry.name);
}

QByteArray IniRegistry::contentOf(const QString &file)
{
    try {
        return m_files.exists(file) ? m_files.readFile(file) : QByteArray();
    } catch (const QvError &error) {
        throw QvError(PathFileAccess, {}, u"The settings cannot be read: "_s + error.description());
    }
}

bool IniRegistry::write(const QString &file, const Entry &entry, const QString &value)
{
    try {
        makeFolders(m_files, withoutBackslash(parentFolder(file)));
        const auto lock = m_files.lock(file + u".lock"_s, file, patience);
        if (!lock)
            return false;
        IniText text(contentOf(file), file);
        text.setValue(entry.section, entry.name, value);
        m_files.replaceFile(file, text.bytes());
        return true;
    } catch (const QvError &) {
        return false; // the store refuses: the caller tries another or says so
    }
}
