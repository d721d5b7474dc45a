#pragma once

#include <QDir>
#include <QPointer>
#include <QString>
#include <QWidget>

#include <functional>

/// Writes numbered pictures and texts, and tells on standard output what each shows.
class Camera
{
public:
    explicit Camera(const QDir &folder)
        : m_folder(folder)
    {
    }

    /// Lets pending events run, then takes `window` as NNN-<name>.png.
    void take(QWidget *window, const QString &name, const QString &caption);
    /// Writes a text as NNN-<name>.txt.
    void note(const QString &text, const QString &name, const QString &caption);
    [[nodiscard]] int count() const { return m_count; }

private:
    QString nextFile(const QString &name, const QString &ending);
    static void tell(const QString &file, const QString &caption);

    QDir m_folder;
    int m_count = 0;
};

/// Lets the program run for a while.
void settle(int milliseconds = 60);

/// As soon as a modal window is open, runs `act` on it; the progress of long work is passed over
/// unless it is what is waited for. Delete what it returns to stop waiting.
QPointer<QObject> whenModal(const std::function<void(QWidget *)> &act, bool orProgress = false);

/// Types into a field key by key, as an author does.
void type(QWidget *field, const QString &text);

/// The child of that name. Ends the tour with a message when it is not there.
template <typename Widget>
Widget *child(const QWidget *window, const char *name);

[[noreturn]] void tourFails(const QString &reason);

template <typename Widget>
Widget *child(const QWidget *window, const char *name)
{
    auto *found = window->findChild<Widget *>(QString::fromLatin1(name));
    if (!found)
        tourFails(QString::fromLatin1(name) + QStringLiteral(" was not found"));
    return found;
}
