#pragma once

#include "controls/pages/KeptTexts.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <condition_variable>
#include <functional>
#include <mutex>
#include <optional>
#include <thread>

/// Keeps the unsaved text of the open page on disk while the author types, so that it outlives a
/// program that dies: a few seconds after the last key, and every ten seconds while keys keep
/// coming. The disk is touched on a thread of its own. While this lives, other programs leave what
/// it keeps alone.
class RecoveryKeeper final : public QObject
{
    Q_OBJECT

public:
    using Text = std::function<std::optional<QString>()>; ///< unsaved text; nothing when none

    RecoveryKeeper(FileSystem &files, Text text, QObject *parent = nullptr);
    ~RecoveryKeeper() override;

    /// Another page; what was kept of the one before stays, for whoever opens it next. "" for none.
    void begin(const QString &projectFolder, const QString &page);
    /// A key was pressed.
    void textChanged();
    /// Keeps the text before it returns. Raises as KeptTexts::take and keep.
    void keepNow(const QString &text);
    /// Saved or given up: what was kept here since `begin` goes. Where it cannot be removed it is
    /// offered once more, which harms nobody.
    void forget();
    /// Where this page's text is kept; "" when none is.
    [[nodiscard]] QString place();

private:
    struct Order
    {
        QString folder, page, text;
    };
    void keepSoon();
    void work(const std::stop_token &stop);
    void keep(const Order &order);
    void settle(); ///< waits for the thread, and takes back what it has not begun

    FileSystem &m_files;
    Text m_text;
    QString m_folder, m_page;
    QTimer m_timer;
    QElapsedTimer m_unkept; ///< since the first key that is not kept yet

    std::mutex m_guard; ///< of what follows
    std::condition_variable_any m_news;
    std::optional<Order> m_order;
    bool m_busy = false;
    std::unique_ptr<KeptPlace> m_place;
    std::jthread m_thread;
};
