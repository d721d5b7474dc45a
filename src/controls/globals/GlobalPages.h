#pragma once

#include "controls/session/ProjectSession.h"

#include <QWidget>

#include <optional>

class ListCommands;
class PagePane;
class PagePreview;
class QAction;
class QHBoxLayout;
class QLabel;
class QTabWidget;
class QTreeWidget;
class QTreeWidgetItem;

/// The project's global pages: their list, and source and preview of the one that is chosen.
class GlobalPages final : public QWidget
{
    Q_OBJECT

public:
    explicit GlobalPages(ProjectSession &session, QWidget *parent = nullptr);

    /// Chooses the page of that title; false when there is none.
    bool choose(const QString &title);
    /// Shows a place in the source of the page at `path`, relative to the project folder.
    void showPlace(const QString &path, qsizetype start, qsizetype length);
    /// Asks what to do with unsaved text. False when the author wants to stay.
    bool mayLeave();
    /// The page that is shown may have been changed by another program.
    void noticeChanges();
    /// Does what is asked for in other controls; `request` is about Globals or a GlobalPage.
    void obey(const ProjectRequest &request);

Q_SIGNALS:
    void changed(const QString &page, const QString &type); ///< by the author, the page named

private:
    using Node = ProjectRequest::Node;

    void layOut();
    QWidget *list();
    QWidget *details();
    void makeCommands(QWidget *side, QHBoxLayout *buttons);
    void connectParts();
    void rebuild();
    void addPage(const GlobalPage &page);
    void showFile(QTreeWidgetItem *row, const GlobalPage &page);
    void showFiles(const QStringList &changed);
    void offerCommands();
    void showChosen();
    void showPreview();

    void askNew();
    void askFile();
    void takeFiles(const QStringList &files);
    void askChange();
    void askRenameFile();
    void askDelete();
    void move(int places);
    void moveTo(const GlobalPage &page, int place);
    void unlock();
    void obeyForChosen(const ProjectRequest &request);
    bool perform(const GlobalPage &page, const QString &done, const std::function<void()> &body);

    [[nodiscard]] std::optional<GlobalPage> chosen();
    [[nodiscard]] int rowOf(const QString &id) const;
    void chooseId(const QString &id);

    ProjectSession &m_session;
    QTreeWidget *tvwGlobalPages;
    QLabel *m_problem;
    QTabWidget *tabPage;
    PagePane *m_pane;
    PagePreview *m_preview;
    ListCommands *m_commands;
    QAction *m_change = nullptr, *m_renameFile = nullptr, *m_delete = nullptr;
    QAction *m_up = nullptr, *m_down = nullptr;
    QString m_shown; ///< id of the page in the pane
};
