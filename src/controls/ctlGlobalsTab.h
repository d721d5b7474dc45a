#pragma once

#include <QWidget>

class PagePreview;
class ProjectSession;
class QFormLayout;
class QLabel;
class QTabWidget;
class QTreeWidget;

/// The project's global pages and categories.
class ctlGlobalsTab final : public QWidget
{
    Q_OBJECT

public:
    explicit ctlGlobalsTab(ProjectSession &session, QWidget *parent = nullptr);

    [[nodiscard]] QString ProjectName() const;
    void setProjectName(const QString &name);
    void setGlobalPageName(const QString &page); ///< shows that page; "" shows the project

Q_SIGNALS:
    void OnCategoryDeletion();
    void OnCategoryAddition();
    void OnRefreshTree();
    void OnprojectNameChange();
    void OnAddGlobalPage(const QString &page, const QString &type, bool changed);
    void OnAdditionQNCategory(bool changed);

private:
    QWidget *projectPage();
    QWidget *globalPages();
    QWidget *categories();
    QLabel *addFact(QFormLayout *form, const QString &caption, const QString &objectName);

    void showProject();
    void showFacts();
    void showGlobalPages();
    void showCategories();
    void addCategory(const QString &name, const QString &origin);
    void showChosenPage();
    void say(QLabel *label, const QString &problem);

    ProjectSession &m_session;
    QTabWidget *tabGlobals;
    QLabel *m_name, *m_id, *m_language, *m_platform, *m_variation;
    QLabel *m_processed, *m_migrated, *m_books, *m_folder, *m_factsProblem;
    QTreeWidget *tvwGlobalPages;
    QLabel *m_pagesProblem;
    PagePreview *m_preview;
    QTreeWidget *tvwCategories;
    QLabel *m_categoriesProblem;
};
