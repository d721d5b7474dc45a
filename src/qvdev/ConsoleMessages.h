#pragma once

#include "platform/Messages.h"
#include "qvdev/ShownPaths.h"

class ProgressLine;

/// Message boxes without a screen: lines on standard error. A question is answered only as far as
/// the call said so; else it is refused, which means its last answer or No.
class ConsoleMessages final : public Messages
{
public:
    explicit ConsoleMessages(ProgressLine &progress);

    /// Questions with this answer get it.
    void allow(const QString &answer) { m_allowed.append(answer); }
    /// Questions for Yes or OK get it.
    void allowYes() { m_yes = true; }
    [[nodiscard]] bool saysYes() const { return m_yes; }
    /// How the author of a call that is refused a question can answer it: "Give --yes to ...".
    void setAdvice(const QString &advice) { m_advice = advice; }
    [[nodiscard]] bool hasRefused() const { return m_refused; }

    Answer show(const Message &message) override;
    int choose(const Choice &choice) override;

    /// How paths in what is printed are shown.
    [[nodiscard]] ShownPaths &paths() { return m_paths; }
    /// One line or more on standard error.
    void print(const QString &text);
    /// All that was printed, without the last line break.
    [[nodiscard]] QString printed() const { return m_printed.join(u'\n'); }

private:
    void refuse(const QString &question);

    ProgressLine &m_progress;
    ShownPaths m_paths;
    QStringList m_allowed, m_printed;
    QString m_advice;
    bool m_yes = false;
    bool m_refused = false;
};
