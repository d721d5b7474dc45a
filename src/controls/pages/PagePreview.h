#pragma once

#include <QString>
#include <QTextBrowser>

class FileSystem;
class PreviewDocument;

/// A page as readers roughly see it. Loads nothing but files below the project's folder, runs no
/// scripts, opens no connection and never leaves its page by itself.
class PagePreview final : public QTextBrowser
{
    Q_OBJECT

public:
    /// `language` (ENU, DEU, ...) decides how style sheets without a mark are read.
    PagePreview(FileSystem &files, const QString &language, QWidget *parent = nullptr);

    /// Shows `html` as the page `relativePage` ("Book_A\sub\page.htm") of the project in
    /// `projectFolder`, from its top.
    void showPage(const QString &html, const QString &projectFolder, const QString &relativePage);
    void showNothing();

Q_SIGNALS:
    /// A link to another page or file of the project was followed: full product path and anchor.
    void pageRequested(const QString &path, const QString &anchor);
    /// The address of a link that leads out of the project and was pointed at or followed; "" when
    /// the pointer left it. Nothing is opened.
    void addressShown(const QString &address);
    void rereadRequested(); ///< F5

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void doSetSource(const QUrl &url, QTextDocument::ResourceType type) override;

private:
    void follow(const QUrl &url);
    void pointAt(const QUrl &url);

    PreviewDocument *m_page;
    QString m_projectFolder, m_relativePage;
};
