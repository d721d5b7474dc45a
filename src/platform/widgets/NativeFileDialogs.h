#pragma once

#include "platform/Messages.h"

class FileSystem;

/// The system's file dialogs, over the active window.
class NativeFileDialogs final : public FileDialogs
{
public:
    explicit NativeFileDialogs(FileSystem &files);

    QString openFile(const QString &title, const QString &folder, const QString &filter) override;
    QStringList openFiles(const QString &title, const QString &folder,
                          const QString &filter) override;
    QString saveFile(const QString &title, const QString &path, const QString &filter) override;
    QString chooseFolder(const QString &title, const QString &folder) override;

private:
    [[nodiscard]] QString startFolder(const QString &folder) const;

    FileSystem &m_files;
};

/// "MDB files(*.mdb)|*.mdb|All|*.*" in the toolkit's notation: "MDB files (*.mdb);;All (*.*)".
QString dialogFilter(const QString &filter);
