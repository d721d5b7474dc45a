#include "platform/QvError.h"

#include <new>
#include <pugixml.hpp>

using namespace Qt::StringLiterals;

QvError::QvError(int number, QString source, QString description)
    : m_number(number)
    , m_source(std::move(source))
    , m_description(std::move(description))
    , m_utf8(text().toUtf8())
{
}

QString QvError::text() const
{
    return QString::number(m_number) + u": "_s + m_description;
}

QvError currentError()
{
    try {
        throw;
    } catch (const QvError &error) {
        return error;
    } catch (const pugi::xpath_exception &error) {
        return {InvalidCall, {}, QString::fromUtf8(error.what())};
    } catch (const std::bad_alloc &) {
        return {7, {}, u"Out of memory"_s};
    } catch (const std::exception &error) {
        return {InvalidCall, {}, QString::fromUtf8(error.what())};
    } catch (...) {
        return {InvalidCall, {}, u"Unexpected error"_s};
    }
}
