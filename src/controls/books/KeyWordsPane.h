#pragma once

#include "controls/session/ProjectSession.h"

#include <QWidget>

#include <optional>

class EntryList;
class QListWidget;
class QPushButton;

/// The keywords of the current page with their synonyms, and those that its headings suggest.
class KeyWordsPane final : public QWidget
{
    Q_OBJECT

public:
    explicit KeyWordsPane(ProjectSession &session, QWidget *parent = nullptr);

    /// Shows the session's current page, at the latest when the pane is seen.
    void refresh();

Q_SIGNALS:
    void changed(); ///< no build has taken it in

private:
    void showEvent(QShowEvent *event) override;
    void layOut();
    void show();
    void showSynonyms();
    void showSuggestions();
    void add(const QString &keyWord);
    void remove(const QString &keyWord);
    void addSuggestion();
    void setSynonyms(const QStringList &synonyms);

    ProjectSession &m_session;
    TocBook m_book;
    std::optional<BookPage> m_page; ///< as shown
    bool m_isOutdated = true;
    EntryList *m_keyWords;
    EntryList *m_synonyms;
    QListWidget *lstSuggestions;
    QPushButton *cmdAddSuggestion;
};
