#include "platform/CharacterSet.h"

#include "platform/CodePages.h"

#include <QStringDecoder>
#include <QStringEncoder>

namespace {

using Flag = QStringConverter::Flag;

} // namespace

CharacterSet::CharacterSet(QByteArray name)
    : m_name(std::move(name))
{
}

bool CharacterSet::isKnown() const
{
    return QStringDecoder(m_name.constData()).isValid() || codePageFor(m_name) != 0;
}

CharacterSet::Decoded CharacterSet::decode(QByteArrayView bytes) const
{
    QStringDecoder decoder(m_name.constData(), Flag::Stateless | Flag::ConvertInitialBom);
    if (!decoder.isValid())
        return decodeByCodePage(codePageFor(m_name), bytes);
    Decoded result{decoder.decode(bytes)};
    result.hasError = decoder.hasError();
    return result;
}

CharacterSet::Encoded CharacterSet::encode(QStringView text) const
{
    QStringEncoder encoder(m_name.constData(), Flag::Stateless);
    if (!encoder.isValid())
        return encodeByCodePage(codePageFor(m_name), text);
    Encoded result{encoder.encode(text)};
    result.hasError = encoder.hasError();
    return result;
}
