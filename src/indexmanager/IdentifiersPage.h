#pragma once

#include "indexmanager/IdentifiersModel.h"
#include "startup/Program.h"

#include <QWidget>

class LongListView;
class QComboBox;
class QLabel;
class QLineEdit;
class RowTable;

/// All link identifiers of the installation, and for the one at hand every place that publishes it
/// or asks for it.
class IdentifiersPage final : public QWidget
{
    Q_OBJECT

public:
    explicit IdentifiersPage(Program &program, QWidget *parent = nullptr);

    /// Shows what was read; `whyEmpty` stands in its place when there is nothing.
    void setIndex(std::shared_ptr<const IdentifierIndex> index, const QString &whyEmpty);
    void setFocusToFilter();

private:
    [[nodiscard]] QWidget *makeFilterRow();
    void setUpList();
    void connectList();
    void sortAgain();
    void filterAgain();
    void showState();
    void showDetails();
    void openIdentifier();
    void copyIdentifiers();
    void choose(const QString &identifier);
    void openDetail(int row);

    Program &m_program;
    IdentifiersModel *m_model;
    QLineEdit *m_filter;
    QComboBox *m_states;
    LongListView *m_list;
    QLabel *m_counts;
    RowTable *m_details;
    QStringList m_detailPaths; ///< below Docs, of the rows of m_details
    QString m_whyEmpty;
    int m_sortedBy = 0;
    Qt::SortOrder m_sortOrder = Qt::AscendingOrder;
};
