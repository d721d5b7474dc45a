#pragma once

#include "controls/pages/PageStore.h"

#include <QWidget>

class PageEditor;
class QLabel;
class QPushButton;

/// The source of the current page: loading, saving in its encoding, unlocking, and what other
/// authors do to the file meanwhile.
class PagePane final : public QWidget
{
    Q_OBJECT

public:
    explicit PagePane(ProjectSession &session, QWidget *parent = nullptr);
    ~PagePane() override;

    /// Shows the session's current page. Unsaved text of another page, which went from the project
    /// meanwhile, is kept for recovery; the page stays while that fails.
    void showCurrent();
    /// The page as read; null when none is shown.
    [[nodiscard]] const OpenPage *page() const { return m_page ? &*m_page : nullptr; }
    [[nodiscard]] QString text() const; ///< as edited so far

    /// Writes unsaved text. False when it is still unsaved.
    bool save();
    /// Asks what to do with unsaved text before the window closes; refused text stays until then.
    /// False when the author wants to stay.
    bool mayLeave();
    /// Reads the page again when somebody else changed it; asks when there is unsaved text.
    void noticeChanges();

Q_SIGNALS:
    void pageShown(); ///< another page, or the same one read again
    void saved(const QString &file);

private:
    void layOut();
    QWidget *recoveryBar();
    void load();
    void askRevert();
    void revert();
    void reload();
    bool write();
    bool settleConflict();
    bool saveAsUtf8(const QString &reason);
    void showSaved();
    void showLock();
    bool rescueUnsaved();
    void unlock();
    void useRecovered();
    [[nodiscard]] bool mayReplaceText();
    void discardRecovered();
    void forgetRecovered();
    void keepUnsaved();
    void show(const QString &problem);
    void updateState();

    ProjectSession &m_session;
    PageStore m_store;
    std::optional<OpenPage> m_page;
    int m_atEnd; ///< what keeps unsaved text when the program ends at once

    QLabel *m_title;
    QLabel *m_encoding;
    QLabel *m_problem;
    QPushButton *m_save;
    QPushButton *m_revert;
    QWidget *m_recovery;
    PageEditor *m_editor;
};
