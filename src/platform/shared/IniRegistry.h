#pragma once

#include "platform/Registry.h"
#include "platform/native/NativeFiles.h"

struct SettingsFolders
{
    QString machine;
    QString user;
};

/// Where the settings lie (native paths): "quovane" in the machine's folder of settings ("/etc", on
/// Windows "C:\ProgramData") and in the user's; one folder for both when QUOVANE_SETTINGS names it.
SettingsFolders settingsFolders();

/// The settings store of a machine without a registry: two files with "[<hive>\<key>]" sections.
/// The user's file also takes machine values that the machine's file refuses, and wins on reading.
/// Several processes may write at once.
class IniRegistry final : public Registry
{
public:
    /// Native paths; the files need not be there.
    IniRegistry(const QString &machineFile, const QString &userFile);

    /// On "machine.ini" and "user.ini" in the folders of this system.
    explicit IniRegistry(const SettingsFolders &folders = settingsFolders());

    [[nodiscard]] std::optional<QString> value(Hive hive, const QString &key,
                                               const QString &name) override;
    bool setValue(Hive hive, const QString &key, const QString &name,
                  const QString &value) override;

private:
    struct Entry
    {
        QString section;
        QString name;
    };
    [[nodiscard]] std::optional<QString> read(const QString &file, const Entry &entry);
    [[nodiscard]] QByteArray contentOf(const QString &file);
    [[nodiscard]] bool write(const QString &file, const Entry &entry, const QString &value);

    NativeFiles m_files;
    QString m_machineFile;
    QString m_userFile;
};
