#include "qvdev/ShownPaths.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/// Where the path that is at `from` ends, or something that is not sure to be of it begins.
qsizetype endOfPath(const QString &text, qsizetype from)
{
    static constexpr auto ends = "\":;,()\n"_L1;
    const auto isEnd = [](QChar character) { return ends.contains(character); };
    return std::find_if(text.cbegin() + from, text.cend(), isEnd) - text.cbegin();
}

} // namespace

void ShownPaths::add(const QString &product, const QString &native)
{
    m_places.append({product, native});
}

// From the last one on, so that what was done is not looked at again.
QString ShownPaths::in(QString text) const
{
    for (const Place &place : m_places) {
        qsizetype at = text.lastIndexOf(place.product);
        while (at >= 0) {
            const qsizetype behind = at + place.product.size();
            const qsizetype end = endOfPath(text, behind);
            const QString below = text.sliced(behind, end - behind).replace(u'\\', u'/');
            text.replace(at, end - at, place.native + below);
            at = at == 0 ? -1 : text.lastIndexOf(place.product, at - 1);
        }
    }
    return text;
}
