#pragma once

#include <QObject>

class QWidget;

/// Layout keeper. For a window it remembers size and place between runs and keeps the window on a
/// screen that is there; for any other widget it remembers the splitters inside it.
class Resizer final : public QObject
{
    Q_OBJECT

public:
    /// `name` is where the layout is remembered in the user's settings. The keeper belongs to
    /// `kept`; splitters are known by their object names.
    Resizer(const QString &name, QWidget *kept);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void restoreWindow();
    void restoreSplitters();
    void remember() const;

    QString m_name;
    QWidget *m_kept;
    bool m_restored = false;
};
