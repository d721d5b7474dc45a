#include "platform/widgets/NativeFileDialogs.h"

#include "platform/FileSystem.h"
#include "platform/Paths.h"
#include "platform/QvError.h"

#include <QApplication>
#include <QFileDialog>

using namespace Qt::StringLiterals;

namespace {

/// A name without an ending gets the first one of a filter such as "Text (*.txt)".
QString withEnding(const QString &file, const QString &filter)
{
    if (file.section(u'/', -1).contains(u'.'))
        return file;
    const QString ending = filter.section(u"(*"_s, 1).section(u')', 0, 0).section(u' ', 0, 0);
    return ending.startsWith(u'.') && ending != ".*"_L1 ? file + ending : file;
}

} // namespace

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

QString NativeFileDialogs::saveFile(const QString &title, const QString &path,
                                    const QString &filter)
{
    const QString proposed = lastComponent(path);
    QString start = startFolder(parentFolder(path));
    if (!start.isEmpty())
        start += u'/';
    QString chosenFilter;
    const QString file = QFileDialog::getSaveFileName(
        QApplication::activeWindow(), title, start + proposed, dialogFilter(filter), &chosenFilter);
    if (file.isEmpty())
        return {};
    return m_files.productPath(withEnding(file, chosenFilter));
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
