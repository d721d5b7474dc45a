#pragma once

#include "controls/parts/LatePage.h"

class CategoriesPage;
class GlobalPages;
class ProjectPage;
class ProjectSession;
class QTabWidget;
class QuickNavCategories;
struct ProjectRequest;

/// What belongs to the project as a whole: its name and ID, the global pages, the categories of
/// books and those of the quick navigation. Each has a tab page of its own, made when it is needed.
class ctlGlobalsTab final : public QWidget
{
    Q_OBJECT

public:
    explicit ctlGlobalsTab(ProjectSession &session, QWidget *parent = nullptr);

    [[nodiscard]] QString ProjectName() const;
    void setProjectName(const QString &name);
    void setGlobalPageName(const QString &page); ///< shows that page; "" shows the project

    /// Shows a place in the source of a global page: path relative to the project folder.
    void showPlace(const QString &path, qsizetype start, qsizetype length);

    /// Asks what to do with the unsaved text of a global page before the window closes. False when
    /// the author wants to stay.
    [[nodiscard]] bool mayLeave();

Q_SIGNALS:
    void OnCategoryDeletion();
    void OnCategoryAddition();
    void OnRefreshTree();
    void OnprojectNameChange();
    void OnAddGlobalPage(const QString &page, const QString &type, bool changed);
    void OnAdditionQNCategory(bool changed);
    /// A global page is asked for elsewhere: bring this editor to the front.
    void openRequested();

private:
    bool event(QEvent *event) override;
    void layOut();
    void connectSession();
    void connectProjectPage();
    void connectGlobalPages(GlobalPages *pages);
    void connectCategories(CategoriesPage *categories);
    void connectQuickNavCategories(QuickNavCategories *categories);
    void obey(const ProjectRequest &request);
    void noticeChanges();
    void enable();

    ProjectSession &m_session;
    QTabWidget *tabGlobals;
    ProjectPage *m_projectPage;
    LatePage<GlobalPages> *m_globalPages;
    LatePage<CategoriesPage> *m_categories;
    LatePage<QuickNavCategories> *m_quickNavCategories;
};
