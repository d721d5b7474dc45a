#pragma once

#include "controls/build/BuiltProject.h"

#include <QWidget>

#include <memory>

class QLabel;
class QLineEdit;
class QTreeWidget;
class SearchQuery;

/// Tries a search in the search words of a project, as its readers will: the pages found, best
/// first, and why each was found.
class SearchPane final : public QWidget
{
    Q_OBJECT

public:
    explicit SearchPane(Program &program, QWidget *parent = nullptr);
    ~SearchPane() override;

    /// The search words as they lie there now.
    void setProject(const BuiltProject &project);

Q_SIGNALS:
    /// The author wants to see a page: path relative to the project folder.
    void pageRequested(const QString &file);

private:
    void search();
    void showHits();
    SearchQuery &query();

    Program &m_program;
    BuiltProject m_project;
    QLineEdit *txtSearch;
    QLabel *lblHits;
    QTreeWidget *lstHits;
    std::unique_ptr<SearchQuery> m_query; ///< made for the first search
};
