#pragma once

#include "tools/PageReference.h"
#include "tools/html/HtmlTokens.h"

#include <vector>

/// What the attributes of one start tag refer to: the one place that knows which do.
template <typename View>
class TagReferences final
{
public:
    struct Found
    {
        PageReference::Kind kind;
        View value; ///< as written, never empty
    };

    /// The references of `tag`, in the order of its attributes; good until the next call.
    const std::vector<Found> &of(const BasicHtmlToken<View> &tag);

private:
    using Kind = PageReference::Kind;
    using Attribute = BasicHtmlAttribute<View>;

    void takeAttribute(const BasicHtmlToken<View> &tag, const Attribute &attribute);
    void takeLink(const BasicHtmlToken<View> &tag, View address);
    void takeSourceSet(View list);
    void takeStyle(View css);
    void note(Kind kind, View value);

    std::vector<Found> m_found;
    std::vector<HtmlKey> m_seen;
};

/// The address in the content of a <meta http-equiv=refresh>: "5; url=next.htm"; empty for another
/// tag.
template <typename View>
View refreshAddress(const BasicHtmlToken<View> &meta);

/// The character set that a <meta> declares; empty when it is none that does.
template <typename View>
View declaredCharset(const BasicHtmlToken<View> &meta);

extern template class TagReferences<QStringView>;
extern template class TagReferences<std::string_view>;
extern template QStringView refreshAddress(const BasicHtmlToken<QStringView> &);
extern template std::string_view refreshAddress(const BasicHtmlToken<std::string_view> &);
extern template QStringView declaredCharset(const BasicHtmlToken<QStringView> &);
extern template std::string_view declaredCharset(const BasicHtmlToken<std::string_view> &);
