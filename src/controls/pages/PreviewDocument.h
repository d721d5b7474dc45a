#pragma once

#include <QSet>
#include <QString>
#include <QTextDocument>
#include <QUrl>

#include <optional>

class FileSystem;
class QImage;

/// A document that gets pictures and style sheets only from files below one project's folder.
/// Whatever else a page asks for is answered by an invisible picture or an empty style sheet, and
/// never by nothing: nothing would send Qt to the disk on its own.
class PreviewDocument final : public QTextDocument
{
    Q_OBJECT

public:
    PreviewDocument(FileSystem &files, QString language, QObject *parent);

    /// Empties the document and says which page comes next. `page` is relative to the project's
    /// folder, which ends in a backslash.
    void startPage(const QString &projectFolder, const QString &page);

    /// The file in the project that a reference of the page means, relative to its folder; nothing
    /// when it leads out of it.
    [[nodiscard]] std::optional<QString> fileInProject(const QUrl &reference) const;
    /// Whether a picture of the page is not shown: it is absent, unreadable, outside or too large.
    [[nodiscard]] bool isMissing(const QString &picture) const;

protected:
    QVariant loadResource(int type, const QUrl &name) override;

private:
    std::optional<QByteArray> readFile(const QUrl &reference) const;
    /// Null for one that is not shown.
    QImage picture(const QByteArray &bytes);

    FileSystem &m_files;
    QString m_language;
    QString m_projectFolder, m_page;
    qint64 m_pixels = 0; ///< decoded for this page so far
    QSet<QUrl> m_missing;
};
