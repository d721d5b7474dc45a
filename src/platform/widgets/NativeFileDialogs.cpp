#include "platform/widgets/NativeFileDialogs.h"

#include "platform/FileSystem.h"
#include "platform/QvError.h"

#include <QApplication>
#include <QFileDialog>

using namespace Qt::StringLiterals;

NativeFileDialogs::NativeFileDialogs(FileSystem &files)
    : m_files(files)
{
}

QString NativeFileDialogs::openFile(const QString &title, const QString &folder,
                                    const QString &filter)
{
    const QString file = QFileDialog::getOpenFileName(QApplication::activeWindow(), title,
                                                      startFolder(folder), dialogFilter(filter));
    return file.isEmpty() ? QString() : m_files.productPath(file);
}

QStringList NativeFileDialogs::openFiles(const QString &title, const QString &folder,
                                         const QString &filter)
{
    const QStringList chosen = QFileDialog::getOpenFileNames(
        QApplication::activeWindow(), title, startFolder(folder), dialogFilter(filter));
    QStringList files;
    for (const QString &file : chosen)
        files.append(m_files.productPath(file));
    return files;
}

QString NativeFileDialogs::chooseFolder(const QString &title, const QString &folder)
{
    const QString chosen =
        QFileDialog::getExistingDirectory(QApplication::activeWindow(), title, startFolder(folder));
    return chosen.isEmpty() ? QString() : m_files.productPath(chosen);
}

QString NativeFileDialogs::startFolder(const QString &folder) const
{
    try {
        return folder.isEmpty() ? QString() : m_files.nativePath(folder);
    } catch (const QvError &) {
        return {}; // a stored folder that is no path here: the dialog opens where it likes
    }
}

QString dialogFilter(const QString &filter)
{
    const QStringList parts = filter.split(u'|');
    QStringList entries;
    for (qsizetype at = 0; at + 1 < parts.size(); at += 2) {
        const QString label = parts[at].section(u'(', 0, 0).trimmed();
        entries.append(label + u" ("_s + QString(parts[at + 1]).replace(u';', u' ') + u')');
    }
    return entries.join(u";;"_s);
}
