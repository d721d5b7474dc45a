#pragma once

#include "controls/books/OutlineEdit.h"
#include "controls/books/OutlineRows.h"
#include "controls/session/ProjectSession.h"

#include <QHash>
#include <QSet>
#include <QWidget>

struct DraggedNodes;
class OutlineMenu;
class OutlineTree;
class PageActions;
class QLabel;
class QLineEdit;
class QPushButton;
class QTreeWidgetItem;

/// The pages of the current book, with what is wrong with them or with the book's file.
class PageOutline final : public QWidget
{
    Q_OBJECT

public:
    PageOutline(ProjectSession &session, PageActions *pages, QWidget *parent = nullptr);

    /// Shows the session's current book as it is now; what is unfolded and chosen stays. A file
    /// that cannot be read is said, not raised.
    void showCurrent();
    /// Moves to the session's current page.
    void followSession();
    /// The same as `showCurrent` when one of these files is the book's concern.
    void lookAgain(const QStringList &paths);
    void editTitle(); ///< of the current page
    /// The page before or behind the current one, as the outline shows them.
    void step(int by);

Q_SIGNALS:
    void addFilesRequested();
    void addFolderRequested();
    void importFilesRequested();
    void importFolderRequested();
    void importNewerRequested();
    void filesDropped(const QStringList &paths); ///< product paths

private:
    /// What the button of the notice does.
    enum class Remedy { None, CreateFile, ListPages };

    void layOut();
    QWidget *buttons();
    QPushButton *addButton(const char *objectName, const QString &text, QLatin1StringView picture);
    void connectTree();
    void readBook();
    void noteFolded(const QTreeWidgetItem *item, bool folded);
    void drop(const DraggedNodes &nodes, const OutlinePlace &place);
    void say(const QString &text, Remedy remedy);
    void runRemedy();
    void askList();
    void listPages(const TocBook &book, const QStringList &files);
    void choose(const QTreeWidgetItem *item);
    [[nodiscard]] QString key() const;

    ProjectSession &m_session;
    PageActions *m_pages;
    QWidget *m_notice;
    QLabel *m_says;
    QPushButton *m_remedyButton;
    QLineEdit *txtFilter;
    OutlineTree *tvwPages;
    OutlineRows m_rows;
    OutlineMenu *m_menu;
    QPushButton *cmdNew;
    QPushButton *cmdAdd;
    QPushButton *cmdImport;
    QHash<QString, QSet<QString>> m_folded; ///< pages by book
    QString m_shown;                        ///< the book that is shown
    Remedy m_remedy = Remedy::None;
};
