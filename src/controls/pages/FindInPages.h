#pragma once

#include "tools/PageSearch.h"

#include <QDialog>

#include <memory>

class PageHitsModel;
class PageSearchRun;
class ProjectSession;
class QBoxLayout;
class QCheckBox;
class QComboBox;
class QGridLayout;
class QLabel;
class QLineEdit;
class QPushButton;
class QTableView;

/// Finding and replacing over all pages of the project, of the current book, or of the global
/// pages. Replacing shows first what it would do, hit by hit, and can be undone as one command.
class FindInPages final : public QDialog
{
    Q_OBJECT

public:
    explicit FindInPages(ProjectSession &session, QWidget *parent = nullptr);
    ~FindInPages() override;

    /// Comes to the front with this text to find; "" leaves the one there is.
    void open(const QString &text);

Q_SIGNALS:
    /// The author wants to see this hit: path relative to the project folder, place in the text.
    void placeRequested(const QString &path, qsizetype start, qsizetype length);
    void replaced(); ///< pages were changed

private:
    void layOut();
    void addFields(QGridLayout *fields);
    QBoxLayout *optionRow();
    QBoxLayout *buttonRow();
    QBoxLayout *countRow();
    void makeTable();
    QPushButton *button(const char *name, const QString &text, void (FindInPages::*slot)());

    [[nodiscard]] FindOptions options() const;
    [[nodiscard]] QStringList folders() const;
    void showState();
    void find();
    void preview();
    void start(bool replacing);
    void stop();
    void finish(bool stopped, const QString &problem);
    void showCount();
    void openHit(const QModelIndex &index);

    void replaceChecked();
    bool unlockFirst(const QList<FoundPage> &pages);
    void replaceIn(const QList<FoundPage> &pages);

    ProjectSession &m_session;
    PageHitsModel *m_hits;
    QLineEdit *m_text, *m_replacement;
    QLabel *m_problem, *m_count;
    QComboBox *m_scope;
    QCheckBox *m_matchCase, *m_wholeWord, *m_isPattern, *m_all;
    QPushButton *m_find, *m_preview, *m_replace, *m_stop;
    QTableView *m_table;
    std::unique_ptr<PageSearchRun> m_run;
    bool m_running = false;
    bool m_complete = false; ///< the run went through, and replacing may go by it
    QString m_progress;
};
