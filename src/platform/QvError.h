#pragma once

#include <QString>

#include <exception>
#include <type_traits>
#include <utility>

/// Run-time error numbers the product reports.
enum ErrorNumber : int {
    InvalidCall = 5,
    FileNotFound = 53,
    PermissionDenied = 70,
    PathFileAccess =
        75, ///< a file that is there but cannot be read or written as what it should be
    PathNotFound = 76,
    ObjectNotSet = 91,
    ComponentMissing = 429,
};

/// The one error of the program: a run-time error number, where it was raised, what happened.
class QvError final : public std::exception
{
public:
    QvError(int number, QString source, QString description);

    [[nodiscard]] int number() const { return m_number; }
    [[nodiscard]] const QString &source() const { return m_source; }
    [[nodiscard]] const QString &description() const { return m_description; }
    /// "<number>: <description>"
    [[nodiscard]] QString text() const;
    [[nodiscard]] const char *what() const noexcept override { return m_utf8.constData(); }

private:
    int m_number;
    QString m_source;
    QString m_description;
    QByteArray m_utf8;
};

/// Leaves whatever is running because the program is about to end or the author pressed Stop.
/// Not an error: traps let it pass, and only the rim that started the work catches it.
struct Unwinding
{
    enum class Reason { ProgramEnds, Stopped } reason;
};

/// Whatever exception is being handled, as a QvError. Call it only inside a catch block.
QvError currentError();

/// Runs `body`. A failure goes to `onError`, and the result is then the default one.
template <typename OnError, typename Body>
auto trap(OnError &&onError, Body &&body) -> std::invoke_result_t<Body>
{
    try {
        return body();
    } catch (const Unwinding &) {
        throw;
    } catch (...) {
        onError(currentError());
    }
    return std::invoke_result_t<Body>();
}
