#pragma once

#include "controls/session/ProjectSession.h"

#include <QSet>
#include <QWidget>

class BookCommands;
class QLabel;
class QPushButton;
class QTreeWidget;
class QTreeWidgetItem;

/// The pages of the current book, with what is wrong with them or with the book's file.
class PageOutline final : public QWidget
{
    Q_OBJECT

public:
    explicit PageOutline(ProjectSession &session, QWidget *parent = nullptr);

    /// Shows the session's current book; a file that cannot be read is said, not raised.
    void showCurrent();
    /// Moves to the session's current page.
    void followSession();

Q_SIGNALS:
    void addFilesRequested();
    void addFolderRequested();

private:
    /// What the button of the notice does.
    enum class Remedy { None, CreateFile, ListPages };

    void layOut();
    void readBook();
    void addItems(QTreeWidgetItem *parent, const QList<BookPage> &pages,
                  const QSet<QString> &files);
    [[nodiscard]] QSet<QString> filesInFolder() const;
    void say(const QString &text, Remedy remedy);
    void runRemedy();
    void listPages(BookCommands &commands, const TocBook &book);
    void choose(const QTreeWidgetItem *item);

    ProjectSession &m_session;
    QWidget *m_notice;
    QLabel *m_says;
    QPushButton *m_remedyButton;
    QTreeWidget *tvwPages;
    QPushButton *cmdAdd;
    Remedy m_remedy = Remedy::None;
};
